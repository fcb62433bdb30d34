#include "algorithm/binfactory.h"

#include <gtest/gtest.h>

#include <memory>

#include "algorithm/binsettings.h"
#include "metadata/binvarlist.h"
#include "support/agreement.h"
#include "support/hostdoubles.h"

namespace {

TEST(BINFactory, TellsHowTheLastCreationWentAndLetsGo) {
  auto factory = std::make_unique<BINFactory>();
  BINSettings settings;
  settings.SetNumberOfBins(4);
  BINVarList list;
  EXPECT_EQ(factory->CreateBINAlgorithm(settings, list), nullptr);
  EXPECT_EQ(Text(factory->GetStatus()), "120003/-1[0 -1 0]");

  list.AddContVar("x", "", IBINVariable::RoleAttribute);
  const std::unique_ptr<IBINAlgorithm> algorithm(factory->CreateBINAlgorithm(settings, list));
  EXPECT_TRUE(factory->GetStatus().IsOK()) << "the failure before is forgotten";

  CountingCancel query(1);
  settings.SetCancelPointer(&query);
  EXPECT_EQ(factory->CreateBINAlgorithm(settings, list), nullptr);
  EXPECT_EQ(Text(factory->GetStatus()), "1/-1[0 0 0]") << "cancelled already";

  factory.reset();
  settings.SetNumberOfBins(7);
  list.AddContVar("y", "", IBINVariable::RoleAttribute);
  ASSERT_NE(algorithm, nullptr);
  EXPECT_EQ(algorithm->GetSettings().GetNumberOfBins(), 4) << "a copy";
  EXPECT_EQ(algorithm->GetVarList().Size(), 1) << "a copy";
  EXPECT_EQ(algorithm->GetComponentVersion().find("Supervised Binning Component Ver. 1.0"), 0u);
}

}  // namespace
