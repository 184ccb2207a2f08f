# Writes OUTPUT, a C++ source with the SQL files of the folders below SOURCE as wide literals, so
# that the library needs no file at run time. Run with cmake -P.
set(source_text "#include \"schema/embedded_files.h\"\n\nnamespace schema\n{\n\n")
string(APPEND source_text "const EmbeddedFile kEmbeddedFiles[] = {\n")
foreach(folder mariadb postgresql sample sqlite sqlserver)
  file(GLOB files RELATIVE "${SOURCE}/${folder}" "${SOURCE}/${folder}/*.sql")
  # Grants name a user of the bank's own, so they are run by hand.
  list(REMOVE_ITEM files grants.sql)
  list(SORT files)
  foreach(file IN LISTS files)
    file(READ "${SOURCE}/${folder}/${file}" text)
    cmake_path(GET file STEM name)
    string(APPEND source_text "    {\"${folder}\", L\"${name}\", LR\"sql(${text})sql\"},\n")
  endforeach()
endforeach()
string(APPEND source_text "};\n\nconst std::size_t kEmbeddedFileCount = "
       "sizeof(kEmbeddedFiles) / sizeof(kEmbeddedFiles[0]);\n\n} // namespace schema\n")
file(WRITE "${OUTPUT}" "${source_text}")
