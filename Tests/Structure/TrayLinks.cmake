# Fails when the loader would bring one of the worker's libraries into the program, directly or behind another.
set(workers_own "lib(tesseract|lept|xml2|Qt6Network|curl)\\.so")

execute_process(COMMAND ldd ${PROGRAM} OUTPUT_VARIABLE program COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ldd ${WORKER} OUTPUT_VARIABLE worker COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "${workers_own}[^ ]*" found "${program}")
if(found)
    message(FATAL_ERROR "${PROGRAM} loads ${found}")
endif()
# The commands of the terminal are there before a toolkit would be loaded.
execute_process(COMMAND ldd ${COMMANDS} OUTPUT_VARIABLE commands COMMAND_ERROR_IS_FATAL ANY)
if(commands MATCHES "libQt6(Widgets|Gui)" OR NOT commands MATCHES "libQt6DBus")
    message(FATAL_ERROR "${COMMANDS} loads ${commands}")
endif()
if(NOT program MATCHES "libQt6Widgets" OR NOT worker MATCHES "libtesseract")
    message(FATAL_ERROR "ldd did not tell what the programs load")
endif()
