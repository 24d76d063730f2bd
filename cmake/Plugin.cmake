# The plug-in's code as one object library, made into npvideobroadcast.so and linked into the unit tests.
add_library(plugin_code OBJECT)
target_compile_options(plugin_code PRIVATE -fno-gnu-unique)
set_target_properties(plugin_code PROPERTIES CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
target_link_libraries(plugin_code
    PUBLIC npapi platform PkgConfig::cairo PkgConfig::x11 Threads::Threads
    PRIVATE warnings)

# Called in each of the plug-in's folders: its sources are plug-in code.
function(tv_plugin_folder)
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
    target_sources(plugin_code PRIVATE ${sources})
endfunction()

# The platform library under the one name that every plug-in looks for.
function(tv_platform_library target)
    add_library(${target} SHARED ${ARGN})
    set_target_properties(${target} PROPERTIES OUTPUT_NAME tvplatform SOVERSION 1 VERSION 1
        CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
    target_compile_options(${target} PRIVATE -fno-gnu-unique)
    target_link_options(${target} PRIVATE -Wl,-z,defs)
    target_link_libraries(${target} PUBLIC platform PRIVATE warnings)
endfunction()
