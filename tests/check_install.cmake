cmake_policy(SET CMP0057 NEW)
# Installs the build into a scratch prefix, then builds a tiny program against
# it twice: with find_package(kelcc) and with pkg-config.
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK}/app)
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BIN} --prefix ${WORK}/prefix RESULT_VARIABLE rc OUTPUT_QUIET)
if(rc)
  message(FATAL_ERROR "install failed")
endif()
file(WRITE ${WORK}/app/main.c [=[
#include <kelcc.h>
#include <stdio.h>
#include <string.h>
int main(void) {
  const Kel8u rgb[3] = {255, 0, 0};
  Kel8u yuv[3];
  KeliSize roi = {1, 1};
  if (keliRGBToYUV_8u_C3R(rgb, 3, yuv, 3, roi) != kelStatusOk) return 1;
  if (yuv[0] != 76 || yuv[1] != 90 || yuv[2] != 255) return 2;
  return strcmp(kelccGetLibVersion()->Name, "libkelcce9.so.6.1") != 0;
}
]=])
file(WRITE ${WORK}/app/CMakeLists.txt [=[
cmake_minimum_required(VERSION 3.20)
project(app C)
find_package(kelcc REQUIRED)
add_executable(app main.c)
target_link_libraries(app PRIVATE kelcc::kelcc)
]=])
execute_process(COMMAND ${CMAKE_COMMAND} -S ${WORK}/app -B ${WORK}/app/build -DCMAKE_PREFIX_PATH=${WORK}/prefix
                RESULT_VARIABLE rc OUTPUT_QUIET)
if(rc)
  message(FATAL_ERROR "configure against the installed package failed")
endif()
execute_process(COMMAND ${CMAKE_COMMAND} --build ${WORK}/app/build RESULT_VARIABLE rc OUTPUT_QUIET)
if(rc)
  message(FATAL_ERROR "build against the installed package failed")
endif()
execute_process(COMMAND ${WORK}/app/build/app RESULT_VARIABLE rc)
if(rc)
  message(FATAL_ERROR "program built with find_package gave ${rc}")
endif()
# pkg-config
file(GLOB pcdir ${WORK}/prefix/lib*/pkgconfig ${WORK}/prefix/lib/*/pkgconfig)
set(ENV{PKG_CONFIG_PATH} ${pcdir})
execute_process(COMMAND pkg-config --cflags --libs kelcc OUTPUT_VARIABLE flags RESULT_VARIABLE rc
                OUTPUT_STRIP_TRAILING_WHITESPACE)
if(rc)
  message(FATAL_ERROR "pkg-config does not know kelcc")
endif()
separate_arguments(flags UNIX_COMMAND "${flags}")
execute_process(COMMAND cc ${WORK}/app/main.c ${flags} -o ${WORK}/app/app_pc RESULT_VARIABLE rc)
if(rc)
  message(FATAL_ERROR "build with pkg-config flags failed")
endif()
string(REGEX MATCH "-L([^ ;]+)" _ "${flags}")
set(ENV{LD_LIBRARY_PATH} ${CMAKE_MATCH_1})
execute_process(COMMAND ${WORK}/app/app_pc RESULT_VARIABLE rc)
if(rc)
  message(FATAL_ERROR "program built with pkg-config gave ${rc}")
endif()
# The Python module (when built): imported from the install prefix alone, it
# loads the installed library beside it, not the one in the build tree.
if(PYTHON)
  file(GLOB_RECURSE module ${WORK}/prefix/kelcc*.so)
  if(NOT module)
    message(FATAL_ERROR "the Python module was not installed")
  endif()
  get_filename_component(moddir "${module}" DIRECTORY)
  set(ENV{PYTHONPATH} ${moddir})
  unset(ENV{LD_LIBRARY_PATH})
  execute_process(COMMAND ${PYTHON} -c [=[
import numpy as np, kelcc
maps = open("/proc/self/maps").read()
lib = [l.split()[-1] for l in maps.splitlines() if "libkelcce9.so" in l][0]
y, u, v = kelcc.rgb_to_ycbcr420(np.full((4, 4, 3), 128, np.uint8))
print(kelcc.__file__, lib, int(y[0, 0]))
]=] WORKING_DIRECTORY ${WORK} OUTPUT_VARIABLE out RESULT_VARIABLE rc)
  if(rc OR NOT out MATCHES "^${WORK}/prefix/[^ ]+ ${WORK}/prefix/[^ ]+libkelcce9.so[^ ]* 126")
    message(FATAL_ERROR "the installed Python module: ${rc} ${out}")
  endif()
endif()
