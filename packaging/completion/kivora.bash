# bash completion for kivora(1)

# The names that follow "Output: " or "Input: " in the list of ports, or the presets, one a line.
_kivora_ports() {
    kivora --locale en_US --list-ports 2>/dev/null | sed -n "s/^$1: //p"
}
_kivora_presets() {
    local program folder
    program=$(readlink -f "$(command -v kivora)") || return
    for folder in "${XDG_DATA_HOME:-$HOME/.local/share}/Brennholt/Kivora/Presets" "${program%/*}/Presets"; do
        find "$folder" -maxdepth 1 -name '*.kivoraLXPreset' -printf '%f\n' 2>/dev/null
    done | sed 's/\.kivoraLXPreset$//' | sort -u
}

# Completes the current word with the lines of the standard input, blanks and all.
_kivora_names() {
    local name word=${COMP_WORDS[COMP_CWORD]}
    word=${word#[\"\']}
    word=${word//\\/}
    while IFS= read -r name; do
        [[ $name != "$word"* ]] || COMPREPLY+=("$(printf '%q' "$name")")
    done
}

# Files whose names match one of the patterns, and folders.
_kivora_files() {
    local file pattern
    while IFS= read -r file; do
        for pattern in "$@"; do
            # shellcheck disable=SC2053 # a pattern
            if [[ -d $file || ${file,,} == $pattern ]]; then
                COMPREPLY+=("$file")
                break
            fi
        done
    done < <(compgen -f -- "${COMP_WORDS[COMP_CWORD]}")
    compopt -o filenames 2>/dev/null
}

_kivora() {
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
    COMPREPLY=()
    case $before in
        --output) _kivora_names < <(_kivora_ports Output) ;;
        --input) _kivora_names < <(_kivora_ports Input) ;;
        --preset) _kivora_names < <(_kivora_presets) ;;
        --sound-font) _kivora_files '*.sf2' '*.sf3' ;;
        --render) _kivora_files '*.mid' '*.midi' ;;
        --locale) mapfile -t COMPREPLY < <(compgen -W 'en_US ru_RU' -- "$word") ;;
        --demo | --pictures) mapfile -t COMPREPLY < <(compgen -d -- "$word") ;;
        *)
            if [[ $word == -* ]]; then
                mapfile -t COMPREPLY < <(compgen -W '--output --input --preset --sound-font --new --list-ports
                    --check --render --locale --demo --pictures --help --version' -- "$word")
            else
                _kivora_files '*.kivoralxpreset' '*.wav' '*.mid' '*.midi'
            fi
            ;;
    esac
}
complete -F _kivora kivora
