# kelcc convert: every raw format the tool knows is written from a picture and
# read back into one.
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})
execute_process(COMMAND ${KELCC} demo ${WORK} OUTPUT_QUIET RESULT_VARIABLE rc)
if(rc)
  message(FATAL_ERROR "kelcc demo failed")
endif()
execute_process(COMMAND ${KELCC} formats OUTPUT_VARIABLE listing RESULT_VARIABLE rc)
string(REGEX MATCHALL "(^|\n)[a-z0-9]+ " names "${listing}")
foreach(n IN LISTS names)
  string(STRIP "${n}" fmt)
  execute_process(COMMAND ${KELCC} convert ${WORK}/original.png ${WORK}/pic.${fmt} --format ${fmt} RESULT_VARIABLE rc)
  if(rc)
    message(FATAL_ERROR "kelcc convert to ${fmt} failed")
  endif()
  execute_process(COMMAND ${KELCC} convert ${WORK}/pic.${fmt} ${WORK}/back_${fmt}.png --format ${fmt} --size 640x480
                  RESULT_VARIABLE rc)
  if(rc OR NOT EXISTS ${WORK}/back_${fmt}.png)
    message(FATAL_ERROR "kelcc convert from ${fmt} failed")
  endif()
  message(STATUS "${fmt}: ok")
endforeach()

# Every command answers --help and -h with its usage line on stdout and exit 0,
# without running (no output files appear).
execute_process(COMMAND ${KELCC} --help OUTPUT_VARIABLE listing RESULT_VARIABLE rc)
if(rc)
  message(FATAL_ERROR "kelcc --help gave ${rc}")
endif()
string(REGEX MATCHALL "kelcc [a-z]+" cmds "${listing}")
list(REMOVE_DUPLICATES cmds)
list(LENGTH cmds n)
if(n LESS 12)
  message(FATAL_ERROR "kelcc --help lists only ${n} commands:\n${listing}")
endif()
foreach(c IN LISTS cmds)
  string(REPLACE "kelcc " "" c "${c}")
  foreach(flag --help -h)
    execute_process(COMMAND ${KELCC} ${c} ${WORK}/help_in.png ${WORK}/help_out.png ${flag}
                    OUTPUT_VARIABLE text ERROR_VARIABLE err RESULT_VARIABLE rc)
    if(rc OR NOT text MATCHES "^usage: kelcc ${c}" OR EXISTS ${WORK}/help_out.png)
      message(FATAL_ERROR "kelcc ${c} ${flag}: exit ${rc}\n${text}${err}")
    endif()
  endforeach()
endforeach()
message(STATUS "--help: ${n} commands")

# bench: the table in its smoke-test size, every family present.
execute_process(COMMAND ${KELCC} bench --quick OUTPUT_VARIABLE table RESULT_VARIABLE rc)
if(rc OR NOT table MATCHES "memcpy MB/s" OR NOT table MATCHES "\nycocg ")
  message(FATAL_ERROR "kelcc bench --quick: exit ${rc}\n${table}")
endif()

# Bad inputs: each gives one line on stderr naming the file (or option) and
# the problem, a non-zero exit, and leaves no output (nor temporary) file.
file(WRITE ${WORK}/fake.png "hello, I am not a picture\n")
file(WRITE ${WORK}/blob "raw bytes without a format")
execute_process(COMMAND head -c 1000 ${WORK}/original.png OUTPUT_FILE ${WORK}/trunc.png)
execute_process(COMMAND ${KELCC} convert ${WORK}/original.png ${WORK}/pic_640x480.i420 RESULT_VARIABLE rc)
execute_process(COMMAND head -c 1000 ${WORK}/pic_640x480.i420 OUTPUT_FILE ${WORK}/trunc_640x480.i420)
file(MAKE_DIRECTORY ${WORK}/outdir)
# expected stderr (regex) | file that must not appear | arguments
set(bad_cases
  "missing.png: no such file|out.i420|convert missing.png out.i420"
  "trunc_640x480.i420: 1000 bytes, fewer than the 460800 of one 640x480 i420 frame|out.png|convert trunc_640x480.i420 out.png"
  "pic_640x480.i420: 460800 bytes, fewer than the 720000|out.png|convert pic_640x480.i420 out.png --size 800x600"
  "pic_640x480.i420: 460800 bytes are not a whole number of 320x200 i420 frames|out.png|convert pic_640x480.i420 out.png --size 320x200"
  "out.abc: unknown raw format 'abc'|out.abc|convert original.png out.abc"
  "blob: no format|out.png|convert blob out.png"
  "--size takes WxH.*got '12x'|out.png|convert pic_640x480.i420 out.png --size 12x"
  "outdir: is a folder|outdir/original.i420|convert original.png outdir"
  "nodir/out.i420: no folder nodir|nodir|convert original.png nodir/out.i420"
  "fake.png: not a PNG|out.i420|convert fake.png out.i420"
  "trunc.png: damaged or truncated PNG|out.i420|convert trunc.png out.i420"
  "--grid takes rggb, bggr, gbrg or grbg, got 'rgbg'|out.pgm|mosaic original.png out.pgm --grid rgbg"
  "--depth takes a whole number from 8 to 16, got 'x'|out.pgm|mosaic original.png out.pgm --depth x"
  "fake.png: not a binary PGM|out.png|demosaic fake.png out.png"
  "pic_640x480.i420: 460800 bytes, but 640x480 samples of 8 bits are 307200|out.png|demosaic pic_640x480.i420 out.png --size 640x480"
  "--method takes bilinear or ahd, got 'vng'|out.png|demosaic original.png out.png --method vng"
  "--levels takes a whole number from 2 to 256, got '1'|out.png|reduce original.png out.png --levels 1"
  "--noise takes a whole number from 0 to 100, got 'lots'|out.png|reduce original.png out.png --noise lots"
  "--dither takes none, fs, jjn, stucki or bayer, got 'floyd'|out.png|reduce original.png out.png --dither floyd"
  "outdir: is a folder|outdir.png|reduce original.png outdir --levels 16"
  "missing.png: no such file|out.png|gamma missing.png out.png"
  "unknown option --bogus|out.png|gamma original.png out.png --bogus"
  "--matrix takes three rows of four numbers|out.png|twist original.png out.png --matrix 1,2"
  "fake.png: not a PFM, PNG or PPM picture|out.png|tonemap fake.png out.png"
  "fake.png: not a PNG|lab-L.png|lab fake.png lab"
  "--ms takes milliseconds|none|bench --ms 0"
  "unknown command 'frobnicate'|none|frobnicate x")
foreach(row IN LISTS bad_cases)
  string(REPLACE "|" ";" parts "${row}")
  list(GET parts 0 want)
  list(GET parts 1 product)
  list(GET parts 2 argline)
  separate_arguments(args UNIX_COMMAND "${argline}")
  execute_process(COMMAND ${KELCC} ${args} WORKING_DIRECTORY ${WORK} OUTPUT_QUIET ERROR_VARIABLE err RESULT_VARIABLE rc)
  string(REGEX MATCHALL "\n" lines "${err}")
  list(LENGTH lines nlines)
  file(GLOB leftovers ${WORK}/*kelcc-tmp* ${WORK}/outdir/*)
  if(NOT rc OR NOT err MATCHES "${want}" OR (NOT argline MATCHES "^frobnicate" AND NOT nlines EQUAL 1)
     OR EXISTS ${WORK}/${product} OR leftovers)
    message(FATAL_ERROR "kelcc ${argline}: exit ${rc}, wanted a message matching '${want}' and no ${product}; got:\n${err}${leftovers}")
  endif()
endforeach()
list(LENGTH bad_cases n)
message(STATUS "bad inputs: ${n} cases")
