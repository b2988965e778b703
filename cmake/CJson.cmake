# Target `cjson`: cJSON with cJSON_Utils (JSON Patch), at least 1.7.17.
# Uses the machine's own if it is new enough, otherwise Debian's source package, built here so that the
# sanitizers and the Arm build can use it too.
find_package(PkgConfig REQUIRED)
add_library(cjson INTERFACE)
if(NOT CMAKE_CROSSCOMPILING AND NOT PQ_SANITIZE)
  pkg_check_modules(system_cjson QUIET IMPORTED_TARGET libcjson libcjson_utils>=1.7.17)
endif()

if(system_cjson_FOUND)
  target_link_libraries(cjson INTERFACE PkgConfig::system_cjson)
else()
  # One copy of the source serves all presets.
  set(cjson_folder ${CMAKE_SOURCE_DIR}/build/cjson)
  execute_process(COMMAND ${CMAKE_SOURCE_DIR}/tools/fetch-cjson ${cjson_folder}
                  COMMAND_ERROR_IS_FATAL ANY)
  file(MAKE_DIRECTORY ${cjson_folder}/include/cjson)
  file(COPY ${cjson_folder}/source/cJSON.h ${cjson_folder}/source/cJSON_Utils.h
       DESTINATION ${cjson_folder}/include/cjson)
  add_library(cjson_built STATIC ${cjson_folder}/source/cJSON.c ${cjson_folder}/source/cJSON_Utils.c)
  target_include_directories(cjson_built SYSTEM PUBLIC ${cjson_folder}/include)
  target_link_libraries(cjson_built PRIVATE project_hardening)
  # Hidden visibility: the daemon's copy must not replace another library's copy.
  target_compile_options(cjson_built PRIVATE -w)
  target_link_libraries(cjson INTERFACE cjson_built m)
endif()
