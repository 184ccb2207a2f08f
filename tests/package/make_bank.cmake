# Makes BANK, the SQLite database that the examples judge by, from the scripts of SCHEMA and CONTRACT.

file(REMOVE "${BANK}")
file(GLOB scripts "${SCHEMA}/[0-9]*.sql")
list(SORT scripts)
foreach(script IN LISTS scripts ITEMS "${CONTRACT}")
  execute_process(COMMAND "${SQLITE3}" -bail "${BANK}" INPUT_FILE "${script}"
    COMMAND_ERROR_IS_FATAL ANY)
endforeach()
