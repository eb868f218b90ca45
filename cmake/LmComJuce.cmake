# JUCE core and events, compiled once.
#
# Head-unit applications compile JUCE themselves, so the LmCom library is compiled against
# JUCE's headers and configuration only (LmComJuceHeaders). Programs that do not compile JUCE
# (the project's tests, tools and examples, outside users of the package) link LmComJuce, the one
# static library of JUCE core and events that this project builds and exports beside LmCom.

set(LMCOM_JUCE_DEFINITIONS
    JUCE_GLOBAL_MODULE_SETTINGS_INCLUDED=1
    JUCE_MODULE_AVAILABLE_juce_core=1
    JUCE_MODULE_AVAILABLE_juce_events=1
    JUCE_USE_CURL=0
    JUCE_WEB_BROWSER=0
    JUCE_MODAL_LOOPS_PERMITTED=1
    JUCE_STANDALONE_APPLICATION=0)

# Headers and the configuration macros that must agree wherever JUCE's headers are read.
add_library(LmComJuceHeaders INTERFACE)
# The installed package's config adds the JUCE modules folder of the machine that uses it.
target_include_directories(LmComJuceHeaders SYSTEM INTERFACE "$<BUILD_INTERFACE:${JUCE_MODULES_DIR}>")
target_compile_definitions(LmComJuceHeaders INTERFACE JUCE_GLOBAL_MODULE_SETTINGS_INCLUDED=1)

add_library(LmComJuce STATIC
    "${JUCE_MODULES_DIR}/juce_core/juce_core.cpp"
    "${JUCE_MODULES_DIR}/juce_events/juce_events.cpp")
add_library(LmCom::LmComJuce ALIAS LmComJuce)
target_include_directories(LmComJuce SYSTEM PUBLIC "$<BUILD_INTERFACE:${JUCE_MODULES_DIR}>")
target_compile_definitions(LmComJuce PUBLIC ${LMCOM_JUCE_DEFINITIONS} $<$<PLATFORM_ID:Linux>:LINUX=1>)
target_compile_options(LmComJuce PRIVATE -w)
find_package(Threads REQUIRED)
find_package(ZLIB REQUIRED)
target_link_libraries(LmComJuce PUBLIC ZLIB::ZLIB Threads::Threads ${CMAKE_DL_LIBS} rt)
set_target_properties(LmComJuce PROPERTIES EXPORT_NAME LmComJuce)
