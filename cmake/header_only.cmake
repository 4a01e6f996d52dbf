# Libraries of the system that are nothing but headers. The cross compiler takes them, too, and must
# not see the folder where the headers of this system's own libraries are: each library is reached
# through a folder of its own that holds one link.
function(header_only target folder package)
    if(NOT IS_DIRECTORY /usr/include/${folder})
        message(FATAL_ERROR "/usr/include/${folder} is missing: scripts/setup.sh installs ${package}")
    endif()
    set(links ${CMAKE_BINARY_DIR}/headers/${target})
    file(MAKE_DIRECTORY ${links})
    file(CREATE_LINK /usr/include/${folder} ${links}/${folder} SYMBOLIC)
    add_library(${target} INTERFACE)
    target_include_directories(${target} SYSTEM INTERFACE ${links})
endfunction()

header_only(korvane_json nlohmann nlohmann-json3-dev)
header_only(korvane_cli11 CLI libcli11-dev)
