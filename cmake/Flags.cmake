# Every target of the project links quorvane_flags; no target sets compiler flags of its own.
add_library(quorvane_flags INTERFACE)
target_compile_options(quorvane_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wold-style-cast
    $<$<BOOL:${QUORVANE_WERROR}>:-Werror>)
target_compile_definitions(quorvane_flags INTERFACE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII)
target_include_directories(quorvane_flags INTERFACE ${PROJECT_SOURCE_DIR}/src)

# As Debian hardens its own builds, and independent of the folder in which they are made.
target_compile_options(quorvane_flags INTERFACE
    -fstack-protector-strong -fstack-clash-protection -Werror=format-security
    -ffile-prefix-map=${PROJECT_SOURCE_DIR}=.)
if(CMAKE_SYSTEM_PROCESSOR STREQUAL x86_64)
    target_compile_options(quorvane_flags INTERFACE -fcf-protection)
endif()
target_link_options(quorvane_flags INTERFACE LINKER:-z,relro,-z,now)

if(NOT QUORVANE_SANITIZE) # which sees itself what this looks for, and it needs an optimised build
    target_compile_options(quorvane_flags INTERFACE
        $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE> $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=2>)
else()
    target_compile_options(quorvane_flags INTERFACE -fsanitize=${QUORVANE_SANITIZE} -fno-omit-frame-pointer
                                                    -fno-sanitize-recover=all)
    target_link_options(quorvane_flags INTERFACE -fsanitize=${QUORVANE_SANITIZE})
endif()
