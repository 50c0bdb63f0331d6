# What a build for macOS is told; docs/macos.md explains each.
set(WAKELOFT_TEAM_IDENTIFIER "" CACHE STRING "The team that is to sign the app, of ten characters; none: not for others")
set(WAKELOFT_SPARKLE_FRAMEWORK "" CACHE PATH "Sparkle.framework, of Sparkle 2, which the app brings along")
set(WAKELOFT_UPDATE_FEED "https://example.org/wakeloft/appcast.xml" CACHE STRING "The address of Sparkle's list of versions")
set(WAKELOFT_UPDATE_PUBLIC_KEY "" CACHE STRING "Sparkle's public key for what is signed as an update, as generate_keys prints it")

if(NOT WAKELOFT_TEAM_IDENTIFIER MATCHES "^([A-Z0-9][A-Z0-9][A-Z0-9][A-Z0-9][A-Z0-9][A-Z0-9][A-Z0-9][A-Z0-9][A-Z0-9][A-Z0-9])?$")
  message(FATAL_ERROR "WAKELOFT_TEAM_IDENTIFIER is “${WAKELOFT_TEAM_IDENTIFIER}”, and no team: ten capital letters and digits")
endif()
if(NOT WAKELOFT_SPARKLE_FRAMEWORK MATCHES "/Sparkle\\.framework$"
   OR NOT (CMAKE_CROSSCOMPILING OR IS_DIRECTORY "${WAKELOFT_SPARKLE_FRAMEWORK}/Headers"))
  message(FATAL_ERROR "There is no Sparkle at “${WAKELOFT_SPARKLE_FRAMEWORK}”. Take a release of Sparkle 2, and say "
                      "-DWAKELOFT_SPARKLE_FRAMEWORK=/where/it/is/Sparkle.framework")
endif()
cmake_path(GET WAKELOFT_SPARKLE_FRAMEWORK PARENT_PATH WAKELOFT_SPARKLE_FOLDER)

set(WAKELOFT_BUNDLE ${PROJECT_BINARY_DIR}/Wakeloft.app)
