# fish completion for kivora(1)

function __kivora_ports
    kivora --locale en_US --list-ports 2>/dev/null | string replace --filter --regex "^$argv[1]: " ''
end

function __kivora_presets
    set -l data $XDG_DATA_HOME
    test -n "$data"; or set data $HOME/.local/share
    set -l program (realpath (command -v kivora))
    for folder in $data/Brennholt/Kivora/Presets (dirname $program)/Presets
        test -d $folder; and find $folder -maxdepth 1 -name '*.kivoraLXPreset' -printf '%f\n'
    end | string replace --regex '\.kivoraLXPreset$' '' | sort -u
end

complete -c kivora -l output -x -a '(__kivora_ports Output)' -d 'Play to this MIDI output'
complete -c kivora -l input -x -a '(__kivora_ports Input)' -d 'Listen to this MIDI input'
complete -c kivora -l preset -r -a '(__kivora_presets)' -d 'Begin with a preset'
complete -c kivora -l sound-font -r -a '(__fish_complete_suffix .sf2 .sf3)' -d 'Play this sound font'
complete -c kivora -l new -d 'Open the file in a program of its own'
complete -c kivora -l list-ports -d 'List the MIDI outputs and inputs'
complete -c kivora -l check -d 'Say what would sound and what would not'
complete -c kivora -l render -r -a '(__fish_complete_suffix .mid .midi)' -d 'Play a MIDI file into another file'
complete -c kivora -l locale -x -a 'en_US ru_RU' -d 'The interface language'
complete -c kivora -l demo -x -a '(__fish_complete_directories)' -d 'Play a demonstration'
complete -c kivora -l pictures -x -a '(__fish_complete_directories)' -d 'Leave pictures for the manual'
complete -c kivora -s h -l help -d 'Show the options'
complete -c kivora -s v -l version -d 'Show the version'
