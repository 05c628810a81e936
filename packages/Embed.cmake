# cmake -D LIBRARY=FILE -D TEMPLATE=FILE -D OUTPUT=FILE -P Embed.cmake writes the template with the bytes of the library, in
# the form that the installer's option /hex gives them, in place of @library@.
file(READ ${LIBRARY} library HEX)
string(TOUPPER "${library}" library)
string(REGEX REPLACE "(..)" "\\1 " library "${library}")
string(REPEAT "." 48 line) # sixteen bytes with their blanks
string(REGEX REPLACE "(${line})" "\\1\n" library "${library}\n")
string(REPLACE " \n" "\n" library "${library}")
string(REGEX REPLACE "\n\n$" "\n" library "${library}")
configure_file(${TEMPLATE} ${OUTPUT} @ONLY)
