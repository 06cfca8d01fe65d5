# Makes a program folder anew with a command of molvenctl.
file(REMOVE_RECURSE ${home})
execute_process(COMMAND ${command} COMMAND_ERROR_IS_FATAL ANY)
