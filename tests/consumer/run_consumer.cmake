# Installs the build in BUILD under WORK/prefix, builds the program in SOURCE against it
# with find_package(Noxdesk CONFIG) and runs it: it must print "consumer ok". With TOOLCHAIN
# the program is a Windows one, run by the command RUN (its words joined by "|").
file(REMOVE_RECURSE ${WORK})
function(step what)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE out)
  if(NOT rc EQUAL 0)
    message(FATAL_ERROR "${what} failed (${rc}):\n${out}")
  endif()
  set(out "${out}" PARENT_SCOPE)
endfunction()
step("install" ${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/prefix)
if(TOOLCHAIN)
  # Windows: built with the same cross compiler, run under Wine beside the package's DLLs.
  step("configure" ${CMAKE_COMMAND} -S ${SOURCE} -B ${WORK}/build -G Ninja
       -DCMAKE_PREFIX_PATH=${WORK}/prefix -DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN})
  step("build" ${CMAKE_COMMAND} --build ${WORK}/build)
  file(GLOB dlls ${WORK}/prefix/bin/*.dll)
  file(COPY ${dlls} DESTINATION ${WORK}/build)
  string(REPLACE "|" ";" run "${RUN}")
  step("run" ${run} ${WORK}/build/consumer.exe)
else()
  step("configure" ${CMAKE_COMMAND} -S ${SOURCE} -B ${WORK}/build -G Ninja
       -DCMAKE_PREFIX_PATH=${WORK}/prefix -DCMAKE_CXX_COMPILER=${CXX} "-DCMAKE_CXX_FLAGS=${FLAGS}"
       "-DCMAKE_EXE_LINKER_FLAGS=${LINK_FLAGS}")
  step("build" ${CMAKE_COMMAND} --build ${WORK}/build)
  step("run" ${WORK}/build/consumer)
endif()
if(NOT out MATCHES "consumer ok")
  message(FATAL_ERROR "the program said:\n${out}")
endif()
message(STATUS "${out}")
