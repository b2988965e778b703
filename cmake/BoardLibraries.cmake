# Uses the libraries of a real board instead of the simulated board's, for a toolchain without them such
# as Android's NDK: docs/integration.md has the command.
set(PQ_BOARD_LIBRARIES "" CACHE PATH
    "Folder with the board's liblog.so, libcutils.so, libdrm.so and libbaseparameter.so")
set(PQ_BOARD_HEADERS "" CACHE STRING
    "Folders with the headers of libcutils (cutils/properties.h) and libdrm (xf86drm.h, drm.h)")

foreach(library log cutils baseparameter drm)
  find_library(board_${library} ${library} PATHS ${PQ_BOARD_LIBRARIES} NO_DEFAULT_PATH
               NO_CMAKE_FIND_ROOT_PATH REQUIRED)
  set(target ${library})
  if(library STREQUAL drm)
    set(target PkgConfig::libdrm)  # its name when pkg-config finds it
  endif()
  add_library(${target} SHARED IMPORTED GLOBAL)
  set_target_properties(${target} PROPERTIES IMPORTED_LOCATION ${board_${library}}
                        INTERFACE_INCLUDE_DIRECTORIES "${PQ_BOARD_HEADERS}")
endforeach()
