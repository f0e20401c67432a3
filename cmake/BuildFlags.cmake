# One interface target carries language level, warnings and sanitizers to everything we compile.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_AUTOMOC ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

option(ORVEL_WERROR "Treat warnings as errors" ON)
set(SANITIZE "" CACHE STRING "Sanitizers to build with, e.g. address,undefined")

add_library(orvel_build_flags INTERFACE)
target_include_directories(orvel_build_flags INTERFACE ${CMAKE_SOURCE_DIR})
target_compile_definitions(
  orvel_build_flags
  INTERFACE QT_NO_CAST_FROM_BYTEARRAY QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
            QT_DISABLE_DEPRECATED_BEFORE=0x050F00)
# No contraction: a fused multiply-add on one processor and none on another would give results
# that differ in their last bits.
target_compile_options(
  orvel_build_flags INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -ffp-contract=off)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # gcc 12 sees overlapping copies in any optimised  "text" + std::string  (its bug 105651).
  target_compile_options(orvel_build_flags INTERFACE -Wno-restrict)
endif()
if(ORVEL_WERROR)
  target_compile_options(orvel_build_flags INTERFACE -Werror)
endif()
if(SANITIZE)
  target_compile_options(orvel_build_flags INTERFACE -fsanitize=${SANITIZE}
                                                     -fno-sanitize-recover=all
                                                     -fno-omit-frame-pointer)
  target_link_options(orvel_build_flags INTERFACE -fsanitize=${SANITIZE})
endif()

if(CMAKE_CXX_CLANG_TIDY)
  # Generated sources (moc, rcc) lie below the build tree and are not ours to mend.
  file(WRITE ${CMAKE_BINARY_DIR}/.clang-tidy
       "Checks: '-*,misc-definitions-in-headers'\nHeaderFilterRegex: '^$'\n")
endif()
