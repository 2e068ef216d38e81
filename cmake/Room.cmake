# What every target of the project is compiled with.
function(mirrowvale_compile_options target)
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic -Werror -Wshadow -Wconversion -Wnon-virtual-dtor -Wold-style-cast
        $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>) # GCC 12 sees overlaps in std::string's operator+ that cannot be
    if(MIRROWVALE_SANITIZE)
        target_compile_options(${target} PUBLIC
            -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer
            $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>) # GCC misjudges instrumented code
        target_link_options(${target} PUBLIC -fsanitize=address,undefined)
    endif()
endfunction()

# A room is one folder and one library. Its own headers are found from the project's root, but only those of
# the rooms that it links: each room exports a folder of links to itself alone, so that a wrong include finds
# no header.
function(mirrowvale_room name)
    cmake_parse_arguments(ROOM "" "" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
    add_library(mirrowvale_${name} STATIC ${ROOM_SOURCES})
    set(include_root ${CMAKE_BINARY_DIR}/rooms/${name})
    file(MAKE_DIRECTORY ${include_root})
    file(CREATE_LINK ${CMAKE_SOURCE_DIR}/${name} ${include_root}/${name} SYMBOLIC)
    target_include_directories(mirrowvale_${name} PUBLIC ${include_root})
    target_link_libraries(mirrowvale_${name} PUBLIC ${ROOM_PUBLIC} PRIVATE ${ROOM_PRIVATE})
    mirrowvale_compile_options(mirrowvale_${name})
    if(MIRROWVALE_FUZZ)
        # Coverage leads the fuzzer through the rooms alone, not through the targets' slow references.
        target_compile_options(mirrowvale_${name} PRIVATE -fsanitize=fuzzer-no-link)
        target_compile_definitions(mirrowvale_${name} PUBLIC _GLIBCXX_ASSERTIONS)
    endif()
endfunction()
