# The table of the leaves: what each may include and link. The configure step and the layering test both read it.
#
# KIVORA_LEAVES lists every leaf as its folder under src/. KIVORA_LAYER_<leaf> lists the leaves that it may use, with
# "/" written "_" in the variable's name. KIVORA_EXTERNAL_<leaf> lists the CMake targets from outside that it may link.
# KIVORA_ONLY_<leaf>_<used leaf> is an expression for the only headers that <leaf> may include of the used one.

set(KIVORA_LEAVES
    nk nk/qt midi midi/reader piano midi/arpeggiator libmidi libmidi/alsa libmidi/portmidi libmidi/synth
    engine/values engine/files engine/takes engine render
    QtWidgets/skin QtWidgets/piano locale ui/parts ui/dialogs ui app)
set(KIVORA_QT_LEAVES nk/qt engine/values engine/files engine/takes engine render
    QtWidgets/skin QtWidgets/piano locale ui/parts ui/dialogs ui app)

set(KIVORA_LAYER_nk "")
set(KIVORA_LAYER_nk_qt nk)
set(KIVORA_LAYER_midi nk)
set(KIVORA_LAYER_midi_reader midi nk)
set(KIVORA_LAYER_piano midi nk)
set(KIVORA_LAYER_midi_arpeggiator midi piano nk)
set(KIVORA_LAYER_libmidi midi nk)
set(KIVORA_LAYER_libmidi_alsa libmidi midi nk)
set(KIVORA_LAYER_libmidi_portmidi libmidi midi nk)
set(KIVORA_LAYER_libmidi_synth libmidi midi nk)
set(KIVORA_LAYER_engine_values piano libmidi midi nk)
set(KIVORA_LAYER_engine_files engine/values nk)
set(KIVORA_LAYER_engine_takes engine/files libmidi midi nk)
set(KIVORA_LAYER_engine engine/values engine/files engine/takes midi/arpeggiator piano midi/reader libmidi midi nk)
set(KIVORA_LAYER_render engine engine/takes midi/reader libmidi/synth libmidi midi nk)
set(KIVORA_LAYER_QtWidgets_skin "")
set(KIVORA_LAYER_QtWidgets_piano piano midi nk)
set(KIVORA_LAYER_locale nk piano)
set(KIVORA_LAYER_ui_parts QtWidgets/skin QtWidgets/piano piano nk)
set(KIVORA_LAYER_ui_dialogs
    ui/parts engine engine/values engine/files locale QtWidgets/piano midi/arpeggiator midi/reader piano nk)
set(KIVORA_LAYER_ui
    ui/dialogs ui/parts engine engine/values engine/takes locale QtWidgets/skin QtWidgets/piano midi midi/arpeggiator
    piano nk)
set(KIVORA_LAYER_app ${KIVORA_LEAVES})
list(REMOVE_ITEM KIVORA_LAYER_app app)

set(KIVORA_ONLY_midi_arpeggiator_piano "piano/CKeyboardState[A-Za-z]*\\.h")

set(KIVORA_EXTERNAL_nk Threads::Threads PkgConfig::KeyboardLayout PkgConfig::DBus)
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
set(KIVORA_EXTERNAL_app Qt6::Widgets)

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
