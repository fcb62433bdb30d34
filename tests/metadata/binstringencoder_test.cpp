#include "metadata/binstringencoder.h"

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "metadata/binstringusermissing.h"

namespace {

TEST(BINStringEncoder, GivesCodesInOrderOfAppearance) {
  BINStringEncoder encoder({"pear", "apple", "pear", ""});
  EXPECT_EQ(encoder.GetNumberOfCategories(), 3);
  const std::string values[] = {"pear", "apple", ""};
  for (int code = 0; code < 3; ++code) {
    EXPECT_EQ(encoder.Encode(values[code]), code);
    EXPECT_EQ(encoder.Decode(code), values[code]);
  }
  EXPECT_EQ(encoder.EncodeConst("fig"), -1.0);
  EXPECT_EQ(encoder.GetNumberOfCategories(), 3);
  for (const int code : {-1, 3}) EXPECT_EQ(encoder.Decode(code), "") << code;
}

TEST(BINStringEncoder, UserMissingStringsGetNoCodeButKeepTheirs) {
  BINStringEncoder encoder({"pear"});
  auto userMissing = std::make_unique<BINStringUserMissing>();
  userMissing->AddValue("pear", "");
  userMissing->AddValue("fig", "");
  ASSERT_TRUE(encoder.SetUserMissingInfo(userMissing.release()));
  for (const char* s : {"pear", "fig"}) {
    EXPECT_EQ(encoder.Encode(s), -1.0) << s;
    EXPECT_EQ(encoder.EncodeConst(s), -1.0) << s;
  }
  EXPECT_EQ(encoder.GetNumberOfCategories(), 1);
  EXPECT_EQ(encoder.Decode(0), "pear");
}

TEST(BINStringEncoder, CopiesOutliveTheSourceAndGrowApart) {
  auto source = std::make_unique<BINStringEncoder>(std::vector<std::string>{"pear", "apple"});
  BINStringEncoder constructed(*source);
  BINStringEncoder assigned({"old", "older", "oldest"});
  assigned = *source;
  source->Encode("fig");
  source.reset();
  for (BINStringEncoder* copy : {&constructed, &assigned}) {
    EXPECT_EQ(copy->Decode(1), "apple");
    EXPECT_EQ(copy->GetNumberOfCategories(), 2);
    EXPECT_EQ(copy->Encode("plum"), 2.0);
    EXPECT_EQ(copy->Decode(2), "plum");
  }
}

TEST(BINStringEncoder, ShowsCodesButNoLabels) {
  BINStringEncoder encoder(-5);
  encoder.Encode("pear");
  encoder.Encode("apple");
  encoder.SetValueLabels({"a pear"});
  encoder.SetUserMissingInfo(new BINStringUserMissing);
  std::ostringstream os;
  encoder.Display(os);
  EXPECT_EQ(os.str(),
            "\tBINStringEncoder object:  Last code = 1\n"
            "\t\t0\t\tpear\n"
            "\t\t1\t\tapple\n"
            "\t\tUser-missing values for this encoder:\n\t\t"
            "\nStart of BINStringUserMissing display\n"
            "End of BINStringUserMissing display\n");
}

}  // namespace
