# What every target of the project is compiled with.
function(mirrowvale_compile_options target)
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Wold-style-cast
        $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>) # GCC 12 sees overlaps in std::string's operator+ that cannot be
    set_target_properties(${target} PROPERTIES COMPILE_WARNING_AS_ERROR ON)
    if(MIRROWVALE_SANITIZE)
        target_compile_options(${target} PUBLIC
            -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer
            $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>) # GCC misjudges instrumented code
        target_link_options(${target} PUBLIC -fsanitize=address,undefined)
    endif()
endfunction()

# Makes an include root that has one folder of the sources alone, such as "core" or "platform/text": a header of
# another folder is not found from there.
function(mirrowvale_include_root folder result)
    string(REPLACE "/" "_" name ${folder})
    set(root ${CMAKE_BINARY_DIR}/include-roots/${name})
    cmake_path(GET folder PARENT_PATH parent)
    file(MAKE_DIRECTORY ${root}/${parent})
    file(CREATE_LINK ${CMAKE_SOURCE_DIR}/${folder} ${root}/${folder} SYMBOLIC)
    set(${result} ${root} PARENT_SCOPE)
endfunction()

# A module is one folder and one library, which may exist already. It sees its own headers and those of the
# modules that it links, all from the project's root, so that a wrong include finds no header.
#   mirrowvale_module(FOLDER [SOURCES file...] [PUBLIC library...] [PRIVATE library...])
function(mirrowvale_module folder)
    cmake_parse_arguments(MODULE "" "" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
    string(REPLACE "/" "_" target mirrowvale_${folder})
    if(NOT TARGET ${target})
        add_library(${target} STATIC ${MODULE_SOURCES})
    endif()
    mirrowvale_include_root(${folder} include_root)
    target_include_directories(${target} PUBLIC ${include_root})
    target_link_libraries(${target} PUBLIC ${MODULE_PUBLIC} PRIVATE ${MODULE_PRIVATE})
    mirrowvale_compile_options(${target})
    if(MIRROWVALE_FUZZ)
        # Coverage leads the fuzzer through the modules alone, not through the targets' slow references.
        target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
        target_compile_definitions(${target} PUBLIC _GLIBCXX_ASSERTIONS)
    endif()
endfunction()
