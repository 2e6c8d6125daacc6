# cmake -DOUTPUT=x.cpp -DFILES="a;b" -P EmbedFiles.cmake
#   Generates a C++ source with the contents of the files, so that the program needs no data files at run time.
set(rows "")
foreach(file IN LISTS FILES)
  get_filename_component(name "${file}" NAME)
  file(READ "${file}" text)
  string(APPEND rows "        {\"${name}\", R\"zentri-file(${text})zentri-file\"},\n")
endforeach()
file(WRITE "${OUTPUT}" "#include \"service/EmbeddedFiles.h\"

#include <stdexcept>
#include <string>

namespace zentri::service {

const std::vector<EmbeddedFile>& embeddedFiles() {
    static const std::vector<EmbeddedFile> files{
${rows}    };
    return files;
}

std::string_view embeddedFile(std::string_view name) {
    for (const EmbeddedFile& file : embeddedFiles()) {
        if (file.name == name)
            return file.text;
    }
    throw std::logic_error(\"no embedded file \" + std::string(name));
}

}  // namespace zentri::service
")
