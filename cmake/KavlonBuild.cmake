# How every target of the project is built: warnings, layers, and the Japanese texts.

add_library(kav_warnings INTERFACE)
target_compile_options(kav_warnings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wundef -Wcast-align -Wcast-qual
                                              -Wmissing-declarations -Wformat-security -Werror)
# gcc 12 sees overlapping copies inside std::string where there are none
target_compile_options(kav_warnings INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
target_include_directories(kav_warnings INTERFACE "${PROJECT_SOURCE_DIR}")
# times after 2038, and files with large numbers, on processors of 32 bits, too
target_compile_definitions(kav_warnings INTERFACE _FILE_OFFSET_BITS=64 _TIME_BITS=64)

# Hardening of what is installed; scripts/analyze proves it on the built program.
include(CheckCXXCompilerFlag)
include(CheckPIESupported)
check_pie_supported()
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
check_cxx_compiler_flag(-fcf-protection KAV_HAS_CF_PROTECTION)
check_cxx_compiler_flag(-fstack-clash-protection KAV_HAS_STACK_CLASH_PROTECTION)
set(kav_hardening -fstack-protector-strong -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2
                  $<$<BOOL:${KAV_HAS_CF_PROTECTION}>:-fcf-protection>
                  $<$<BOOL:${KAV_HAS_STACK_CLASH_PROTECTION}>:-fstack-clash-protection>)
add_compile_options("$<$<CONFIG:Release>:${kav_hardening}>")
add_link_options("$<$<CONFIG:Release>:LINKER:-z,relro,-z,now,-z,noexecstack>")

find_program(ICONV iconv REQUIRED)

# Text files (*texts.cpp) are UTF-8 in the repository and EUC-JP in the program: each is converted before it is
# compiled, and a text that EUC-JP can not hold stops the build.
function(kav_texts_as_euc_jp sources_variable)
  set(converted)
  foreach(source IN LISTS ${sources_variable})
    if(source MATCHES "texts\\.cpp$")
      file(RELATIVE_PATH name "${PROJECT_SOURCE_DIR}" "${source}")
      set(output "${PROJECT_BINARY_DIR}/euc-jp/${name}")
      get_filename_component(folder "${output}" DIRECTORY)
      file(MAKE_DIRECTORY "${folder}")
      add_custom_command(
        OUTPUT "${output}"
        COMMAND "${ICONV}" -f UTF-8 -t EUC-JP "${source}" > "${output}"
        DEPENDS "${source}"
        COMMENT "EUC-JP ${name}"
        VERBATIM)
      set_source_files_properties("${output}" PROPERTIES COMPILE_OPTIONS
                                  "$<$<CXX_COMPILER_ID:Clang>:-Wno-invalid-source-encoding>")
      list(APPEND converted "${output}")
    else()
      list(APPEND converted "${source}")
    endif()
  endforeach()
  set(${sources_variable} "${converted}" PARENT_SCOPE)
endfunction()

# Puts the target `name` on top of layers: folders whose rows stand above, and targets of other projects ("PROJECT::NAME").
function(kav_stand_on name)
  foreach(layer IN LISTS ARGN)
    string(REPLACE "/" "_" target "${layer}")
    if(layer MATCHES "::")
      target_link_libraries(${name} PUBLIC ${layer})
    elseif(TARGET kav_${target})
      target_link_libraries(${name} PUBLIC kav_${target})
    else()
      message(FATAL_ERROR "${name} stands on ${layer}, which has no row above")
    endif()
  endforeach()
endfunction()

# kav_library(FOLDER LAYERS...): the library kav_FOLDER, with "_" for "/", of the sources in FOLDER, on top of the layers
# named. One line each, as kav_program: scripts/check-includes reads them.
function(kav_library folder)
  file(GLOB sources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/${folder}/*.cpp")
  list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
  kav_texts_as_euc_jp(sources)
  string(REPLACE "/" "_" name "kav_${folder}")
  add_library(${name} STATIC ${sources})
  target_link_libraries(${name} PRIVATE kav_warnings)
  set_target_properties(${name} PROPERTIES CXX_CLANG_TIDY "${KAV_CLANG_TIDY}")
  target_include_directories(${name} PUBLIC "${PROJECT_SOURCE_DIR}")
  kav_stand_on(${name} ${ARGN})
endfunction()

# kav_program(NAME FILE LAYERS...): the program NAME, whose main function is in FILE. What is installed holds its part of
# the C++ library itself, which halves the time to start it and takes 1.4 MB less memory than the shared one
# (scripts/bench measures both).
add_compile_options("$<$<CONFIG:Release>:-ffunction-sections;-fdata-sections>")
function(kav_program name file)
  add_executable(${name} "${file}")
  target_link_libraries(${name} PRIVATE kav_warnings)
  set_target_properties(${name} PROPERTIES CXX_CLANG_TIDY "${KAV_CLANG_TIDY}")
  kav_stand_on(${name} ${ARGN})
  target_compile_definitions(${name} PRIVATE KAV_VERSION="${PROJECT_VERSION}")
  target_link_options(${name} PRIVATE "$<$<CONFIG:Release>:-static-libstdc++;-static-libgcc;LINKER:--gc-sections>")
endfunction()
