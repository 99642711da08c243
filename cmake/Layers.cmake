# The table of the leaves: what each may include, name and link. The configure step and the layering test both read it.
#
# KIVORA_LEAVES             every leaf as its folder under src/
# KIVORA_LAYER_<leaf>       the leaves that it may use, with "/" written "_" in the variable's name
# KIVORA_ONLY_<leaf>_<used> where it may use only some headers of a leaf, and what they declare: expressions for these
# KIVORA_EXTERNAL_<leaf>    the CMake targets from outside that it may link
# KIVORA_HEADERS_<leaf>     expressions for the headers from outside that it may include
# KIVORA_FOLDERS            folders of a leaf with a row of headers of their own, closed to the leaf's other files
# KIVORA_HEADERS            the headers from outside that every leaf may include: those of the standard library
# KIVORA_QT_HEADERS         the headers of Qt, open to each leaf that may link one of its modules
#
# KIVORA_VOCABULARY         headers that name the numbers of the standard; who may include them writes none himself
#
# An expression is for the whole name, and a dot in it is a dot. The test refuses a row that no file needs.

set(KIVORA_LEAVES
    nk nk/desktop nk/qt midi midi/reader piano midi/arpeggiator libmidi libmidi/alsa libmidi/portmidi libmidi/synth
    engine/values engine/files engine/takes engine render
    QtWidgets/skin QtWidgets/piano locale ui/parts ui/dialogs ui app)
set(KIVORA_FOLDERS nk/platform)

set(KIVORA_LAYER_nk "")
set(KIVORA_LAYER_nk_desktop nk)
set(KIVORA_LAYER_nk_qt nk)
set(KIVORA_LAYER_midi nk)
set(KIVORA_LAYER_midi_reader midi nk)
set(KIVORA_LAYER_piano midi nk)
set(KIVORA_LAYER_midi_arpeggiator midi piano nk)
set(KIVORA_LAYER_libmidi midi nk)
set(KIVORA_LAYER_libmidi_alsa libmidi midi nk)
set(KIVORA_LAYER_libmidi_portmidi libmidi midi nk)
set(KIVORA_LAYER_libmidi_synth libmidi midi nk)
set(KIVORA_LAYER_engine_values piano libmidi midi nk/qt nk)
set(KIVORA_LAYER_engine_files engine/values nk/qt nk)
set(KIVORA_LAYER_engine_takes libmidi midi nk)
set(KIVORA_LAYER_engine
    engine/values engine/files engine/takes midi/arpeggiator piano midi/reader libmidi midi nk/qt nk)
set(KIVORA_LAYER_render engine midi/reader libmidi/synth libmidi midi nk)
set(KIVORA_LAYER_QtWidgets_skin "")
set(KIVORA_LAYER_QtWidgets_piano piano midi nk/desktop nk)
set(KIVORA_LAYER_locale nk/desktop nk/qt nk piano)
set(KIVORA_LAYER_ui_parts QtWidgets/skin QtWidgets/piano piano midi nk/desktop nk/qt nk)
set(KIVORA_LAYER_ui_dialogs
    ui/parts engine engine/values engine/files locale QtWidgets/piano midi/arpeggiator midi/reader libmidi piano
    nk/desktop nk/qt nk)
set(KIVORA_LAYER_ui
    ui/dialogs ui/parts engine engine/values engine/files engine/takes locale QtWidgets/skin QtWidgets/piano midi
    midi/arpeggiator libmidi piano nk/desktop nk/qt nk)
set(KIVORA_LAYER_app
    ui ui/dialogs ui/parts locale render engine engine/values engine/files engine/takes midi/reader libmidi/alsa
    libmidi/portmidi libmidi/synth libmidi midi nk/desktop
    nk/qt nk)

set(KIVORA_ONLY_midi_arpeggiator_piano "piano/CKeyboardState[A-Za-z]*.h")
# The controls of the built-in synthesizer.
set(KIVORA_ONLY_ui_dialogs_libmidi libmidi/SynthSettings.h libmidi/Result.h)
set(KIVORA_ONLY_ui_libmidi libmidi/SynthSettings.h)

set(KIVORA_EXTERNAL_nk Threads::Threads)
set(KIVORA_EXTERNAL_nk_desktop PkgConfig::KeyboardLayout PkgConfig::DBus)
set(KIVORA_EXTERNAL_nk_qt Qt6::Core)
set(KIVORA_EXTERNAL_libmidi_alsa PkgConfig::Alsa)
set(KIVORA_EXTERNAL_libmidi_portmidi PortMidi::PortMidi)
set(KIVORA_EXTERNAL_libmidi_synth PkgConfig::FluidSynth)
set(KIVORA_EXTERNAL_engine_values Qt6::Core Qt6::Gui)
set(KIVORA_EXTERNAL_engine_files Qt6::Core)
set(KIVORA_EXTERNAL_engine Qt6::Core Qt6::Gui)
set(KIVORA_EXTERNAL_render Qt6::Core)
set(KIVORA_EXTERNAL_QtWidgets_skin Qt6::Widgets)
set(KIVORA_EXTERNAL_QtWidgets_piano Qt6::Widgets)
set(KIVORA_EXTERNAL_locale Qt6::Core)
set(KIVORA_EXTERNAL_ui_parts Qt6::Widgets Qt6::GuiPrivate)
set(KIVORA_EXTERNAL_ui_dialogs Qt6::Widgets)
set(KIVORA_EXTERNAL_ui Qt6::Widgets Qt6::GuiPrivate)
set(KIVORA_EXTERNAL_app Qt6::Widgets Qt6::GuiPrivate)

set(KIVORA_HEADERS "[a-z_]+")
set(KIVORA_QT_HEADERS "Q[A-Z][A-Za-z0-9]*" "Qt[A-Z][A-Za-z0-9]*(/[A-Za-z0-9_.]+)?" "q[a-z0-9]+.h")
set(KIVORA_HEADERS_nk_platform
    dirent.h fcntl.h link.h linux/futex.h locale.h poll.h pthread.h pwd.h sched.h signal.h spawn.h stdlib.h
    "sys/[a-z]+.h" time.h ucontext.h unistd.h wctype.h)
set(KIVORA_HEADERS_nk_desktop
    poll.h "sys/[a-z]+.h" unistd.h dbus/dbus.h wayland-client.h "xcb/[a-z]+.h" "xkbcommon/xkbcommon[a-z0-9-]*.h")
set(KIVORA_HEADERS_libmidi_alsa alsa/asoundlib.h)
set(KIVORA_HEADERS_libmidi_portmidi portmidi.h)
set(KIVORA_HEADERS_libmidi_synth fluidsynth.h)
set(KIVORA_HEADERS_ui_parts "qpa/[a-z]+.h")
set(KIVORA_HEADERS_ui_dialogs "ui_[A-Za-z]+.h")
set(KIVORA_HEADERS_ui "ui_[A-Za-z]+.h" "qpa/[a-z]+.h")
set(KIVORA_HEADERS_app "qpa/[a-z]+.h")

set(KIVORA_VOCABULARY
    midi/TMIDIMessage.h midi/MIDIChannels.h midi/MIDIControllers.h
    midi/MIDINotes.h midi/MIDIPrograms.h engine/values/VoiceSlots.h nk/nk_rounding.h)

# The leaves that need Qt, themselves or by a leaf that they use; each stands behind those.
set(KIVORA_QT_LEAVES "")
foreach(leaf IN LISTS KIVORA_LEAVES)
    string(REPLACE "/" "_" name ${leaf})
    set(needs_qt FALSE)
    if(KIVORA_EXTERNAL_${name} MATCHES "Qt6::")
        set(needs_qt TRUE)
    endif()
    foreach(used IN LISTS KIVORA_LAYER_${name})
        if(used IN_LIST KIVORA_QT_LEAVES)
            set(needs_qt TRUE)
        endif()
    endforeach()
    if(needs_qt)
        list(APPEND KIVORA_QT_LEAVES ${leaf})
    endif()
endforeach()
# What KIVORA_CORE_ONLY builds: the leaves that need neither Qt nor a desktop.
set(KIVORA_CORE_LEAVES ${KIVORA_LEAVES})
list(REMOVE_ITEM KIVORA_CORE_LEAVES nk/desktop ${KIVORA_QT_LEAVES})

# kivora_leaf_target(<out> <leaf>): the name of the leaf's library target.
function(kivora_leaf_target out leaf)
    string(REPLACE "/" "_" name ${leaf})
    set(${out} kivora_${name} PARENT_SCOPE)
endfunction()

# kivora_leaf(<leaf> SOURCES ... [USES <leaves>] [EXTERNAL <targets>]): one static library, checked against the table.
function(kivora_leaf leaf)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;USES;EXTERNAL")
    string(REPLACE "/" "_" name ${leaf})
    foreach(used IN LISTS arg_USES)
        if(NOT used IN_LIST KIVORA_LAYER_${name})
            message(FATAL_ERROR "${leaf} may not link ${used}; cmake/Layers.cmake allows: ${KIVORA_LAYER_${name}}")
        endif()
    endforeach()
    foreach(target IN LISTS arg_EXTERNAL)
        if(NOT target IN_LIST KIVORA_EXTERNAL_${name})
            message(FATAL_ERROR "${leaf} may not link ${target}; cmake/Layers.cmake allows: ${KIVORA_EXTERNAL_${name}}")
        endif()
    endforeach()
    add_library(kivora_${name} STATIC ${arg_SOURCES})
    target_include_directories(kivora_${name} PUBLIC ${CMAKE_SOURCE_DIR}/src)
    target_link_libraries(kivora_${name} PRIVATE kivora_warnings PUBLIC ${arg_EXTERNAL})
    if(CMAKE_VERIFY_INTERFACE_HEADER_SETS)
        file(GLOB headers CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.h ${CMAKE_CURRENT_SOURCE_DIR}/platform/*.h)
        target_sources(kivora_${name} PUBLIC FILE_SET HEADERS BASE_DIRS ${CMAKE_SOURCE_DIR}/src FILES ${headers})
    endif()
    foreach(used IN LISTS arg_USES)
        kivora_leaf_target(target ${used})
        target_link_libraries(kivora_${name} PUBLIC ${target})
    endforeach()
endfunction()
