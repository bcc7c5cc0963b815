// tavrin-frugen: writes a FRU image from a readable description (FruDescription.h), raw
// or as a FRU text file (FruTextEmitter.h).
//   tavrin-frugen [--text=ascii|utf8|utf16 [--plain]] DESCRIPTION FILE
#include <cstdio>
#include <fstream>
#include <sstream>

#include "FruDescription.h"
#include "FruTextEmitter.h"

namespace {

int Usage()
{
    fputs("usage: tavrin-frugen [--text=ascii|utf8|utf16 [--plain]] DESCRIPTION FILE\n", stderr);
    return 2;
}

}  // namespace

int main(int argc, char** argv)
{
    std::string sEncoding;
    bool bPlain = false;
    int iArg = 1;
    for (; iArg < argc && argv[iArg][0] == '-'; iArg++) {
        const std::string sOption = argv[iArg];
        if (sOption.compare(0, 7, "--text=") == 0) {
            sEncoding = sOption.substr(7);
        } else if (sOption == "--plain") {
            bPlain = true;
        } else {
            return Usage();
        }
    }
    if (argc - iArg != 2 || (bPlain && sEncoding.empty())) {
        return Usage();
    }
    const char* pchDescription = argv[iArg];
    const char* pchOutput = argv[iArg + 1];
    std::ifstream sInput(pchDescription);
    if (!sInput) {
        fprintf(stderr, "tavrin-frugen: cannot read %s\n", pchDescription);
        return 1;
    }
    std::ostringstream sText;
    sText << sInput.rdbuf();
    sFruImageParts sParts;
    std::string sError;
    if (!FruParseDescription(sText.str(), &sParts, &sError)) {
        fprintf(stderr, "tavrin-frugen: %s: %s\n", pchDescription, sError.c_str());
        return 1;
    }
    const TFruBytes vImage = FruImage(sParts);
    std::string sFile(vImage.begin(), vImage.end());
    if (!sEncoding.empty() && !FruTextFile(vImage, sEncoding, !bPlain,
                                           std::string("Made by tavrin-frugen from ") + pchDescription, &sFile,
                                           &sError)) {
        fprintf(stderr, "tavrin-frugen: %s\n", sError.c_str());
        return 1;
    }
    FILE* pFile = fopen(pchOutput, "wb");
    if (pFile == nullptr || fwrite(sFile.data(), 1, sFile.size(), pFile) != sFile.size() || fclose(pFile) != 0) {
        fprintf(stderr, "tavrin-frugen: cannot write %s\n", pchOutput);
        return 1;
    }
    return 0;
}
