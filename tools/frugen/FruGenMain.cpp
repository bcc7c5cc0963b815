// tavrin-frugen: writes a raw FRU image from a readable description (FruDescription.h).
//   tavrin-frugen DESCRIPTION IMAGE
#include <cstdio>
#include <fstream>
#include <sstream>

#include "FruDescription.h"

int main(int argc, char** argv)
{
    if (argc != 3) {
        fputs("usage: tavrin-frugen DESCRIPTION IMAGE\n", stderr);
        return 2;
    }
    std::ifstream sInput(argv[1]);
    if (!sInput) {
        fprintf(stderr, "tavrin-frugen: cannot read %s\n", argv[1]);
        return 1;
    }
    std::ostringstream sText;
    sText << sInput.rdbuf();
    sFruImageParts sParts;
    std::string sError;
    if (!FruParseDescription(sText.str(), &sParts, &sError)) {
        fprintf(stderr, "tavrin-frugen: %s: %s\n", argv[1], sError.c_str());
        return 1;
    }
    TFruBytes vImage = FruImage(sParts);
    FILE* pFile = fopen(argv[2], "wb");
    if (pFile == nullptr || fwrite(vImage.data(), 1, vImage.size(), pFile) != vImage.size() || fclose(pFile) != 0) {
        fprintf(stderr, "tavrin-frugen: cannot write %s\n", argv[2]);
        return 1;
    }
    return 0;
}
