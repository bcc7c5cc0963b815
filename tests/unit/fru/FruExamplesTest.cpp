// The sample FRU images in examples/ are what tavrin-frugen makes of its descriptions.
#include <gtest/gtest.h>

#include "FruDescription.h"
#include "TestSupport.h"

TEST(FruExamples, MatchTheirDescriptions)
{
    for (const char* pchName : {"server", "card"}) {
        sFruImageParts sParts;
        std::string sError;
        ASSERT_TRUE(FruParseDescription(
            ReadFileText(SourceDir() + "/tools/frugen/samples/" + pchName + ".frudesc"), &sParts, &sError))
            << sError;
        EXPECT_EQ(ReadFileBytes(SourceDir() + "/examples/sample-" + pchName + ".fru"), FruImage(sParts))
            << pchName << ": run scripts/make-examples.sh";
    }
}
