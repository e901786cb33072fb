# Every target of the project links quorvane_flags; no target sets compiler flags of its own.
add_library(quorvane_flags INTERFACE)
target_compile_options(quorvane_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wold-style-cast
    $<$<BOOL:${QUORVANE_WERROR}>:-Werror>)
target_compile_definitions(quorvane_flags INTERFACE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII)
target_include_directories(quorvane_flags INTERFACE ${PROJECT_SOURCE_DIR}/src)
if(QUORVANE_SANITIZE)
    target_compile_options(quorvane_flags INTERFACE -fsanitize=${QUORVANE_SANITIZE} -fno-omit-frame-pointer
                                                    -fno-sanitize-recover=all)
    target_link_options(quorvane_flags INTERFACE -fsanitize=${QUORVANE_SANITIZE})
endif()
