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
