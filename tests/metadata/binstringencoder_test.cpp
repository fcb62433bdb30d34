#include "metadata/binstringencoder.h"

#include <gtest/gtest.h>

#include "metadata/binstringusermissing.h"
#include "support/displaytext.h"

namespace {

TEST(BINStringEncoder, UnknownCodesAreEmpty) {
  const BINStringEncoder encoder({"pear"});
  for (const int code : {-1, 1}) EXPECT_EQ(encoder.Decode(code), "") << code;
}

TEST(BINStringEncoder, ShowsCodesButNoLabels) {
  BINStringEncoder encoder(-5);
  encoder.Encode("pear");
  encoder.Encode("apple");
  encoder.SetValueLabels({"a pear"});
  encoder.SetUserMissingInfo(new BINStringUserMissing);
  EXPECT_EQ(DisplayText(encoder),
            "\tBINStringEncoder object:  Last code = 1\n"
            "\t\t0\t\tpear\n"
            "\t\t1\t\tapple\n"
            "\t\tUser-missing values for this encoder:\n\t\t"
            "\nStart of BINStringUserMissing display\n"
            "End of BINStringUserMissing display\n");
}

}  // namespace
