# cmake -DINPUT=... -DFUNCTION=... -DOUTPUT=... -P EmbedSchema.cmake: writes a C++ source with a function of
# schema/EmbeddedSchema.h that returns the input file's bytes.
file(READ ${INPUT} bytes HEX)
string(REGEX REPLACE "(................................)" "\\1\n" bytes "${bytes}")
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${bytes}")
file(WRITE ${OUTPUT}
     "#include \"schema/EmbeddedSchema.h\"\n\nnamespace demo {\n\nnamespace {\n\nconst unsigned char kBytes[] = {\n"
     "${bytes}\n};\n\n} // namespace\n\nstd::string_view ${FUNCTION}() {\n"
     "    return {reinterpret_cast<const char*>(kBytes), sizeof(kBytes)};\n}\n\n} // namespace demo\n")
