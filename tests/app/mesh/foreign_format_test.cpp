#include "mesh/foreign_format.hpp"

#include <gtest/gtest.h>

#include <string>

using namespace host;

TEST(ForeignFormat, AbaqusIsKnownByItsKeywordsAndCommas) {
  for (const char* content :
       {"*HEADING\nA tile\n*NODE\n1, 0., 0., 0.\n",
        "*Heading\r\n** Job name: a Model name: b\r\n*Part, name=P_1\r\n",
        "** a comment first\n\n*Node\n      1,  0.,  0.,  0.\n*Element, type=S3\n1, 1, 2, 3\n",
        "*NODE, NSET=ALL_NODES\n", "*SHELL SECTION, ELSET=E_1\n"})
    EXPECT_EQ(foreignFormat(content), ForeignFormat::abaqus) << content;
}

TEST(ForeignFormat, LsDynaIsKnownByItsFirstKeywordItsCommentsAndItsUnderscores) {
  for (const char* content :
       {"*KEYWORD\n*NODE\n", "$ LS-DYNA keyword file\n$\n*KEYWORD\n",
        "*keyword 200000000\r\n*TITLE\r\nheading\r\n",
        "*NODE\n       1     0.0     0.0     0.0\n*ELEMENT_SHELL\n", "$# LS-DYNA\n*NODE\n"})
    EXPECT_EQ(foreignFormat(content), ForeignFormat::lsDyna) << content;
}

TEST(ForeignFormat, TheProgramsOwnFormatsAreNone) {
  for (const char* content : {"", "\n\n", "v 0 0 0\n*NODE\n", "solid a\nfacet\n", "GEOMETRIE\n*NODE\nc\n3\n",
                              "\n\n\n3\n*HEADING\n", "*", "* NODE\n", "**\n", "$\n", "*1, 2\n"})
    EXPECT_EQ(foreignFormat(content), ForeignFormat::none) << content;
}

TEST(ForeignFormat, LooksNoFurtherThanItSays) {
  EXPECT_EQ(foreignFormat(std::string(70000, '\n') + "*KEYWORD\n"), ForeignFormat::none);
}
