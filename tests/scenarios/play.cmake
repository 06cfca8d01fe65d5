# Plays one scenario on a copy of a program folder; pictures and PDFs stay beside the copy.
file(REMOVE_RECURSE ${copy})
file(COPY ${home}/ DESTINATION ${copy}/home)
execute_process(COMMAND ${player} --home ${copy}/home --out ${copy} ${scenario} COMMAND_ERROR_IS_FATAL ANY)
