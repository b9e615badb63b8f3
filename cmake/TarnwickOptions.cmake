# Compile settings every target of ours shares.
add_library(tarnwick_options INTERFACE)
target_compile_options(tarnwick_options INTERFACE -Wall -Wextra -Wold-style-cast)
option(TARNWICK_WERROR "Treat every warning as an error (CI turns it on)" OFF)
if(TARNWICK_WERROR)
    target_compile_options(tarnwick_options INTERFACE -Werror)
endif()
target_compile_definitions(tarnwick_options INTERFACE
    QT_NO_CAST_TO_ASCII
    QT_RESTRICTED_CAST_FROM_ASCII
    QT_NO_KEYWORDS)

if(TARNWICK_SANITIZE)
    # Any report ends the process with an error, so a test run fails on it.
    set(_tarnwick_san -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_compile_options(tarnwick_options INTERFACE ${_tarnwick_san})
    target_link_options(tarnwick_options INTERFACE ${_tarnwick_san})
endif()
