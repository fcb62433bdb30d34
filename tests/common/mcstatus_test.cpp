#include "common/mcstatus.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using MCBinning::MCStatus;

TEST(MCStatus, SeverityAloneTellsErrorsFromWarnings) {
  EXPECT_TRUE(MCStatus().IsOK());
  const MCStatus error(0, false);
  EXPECT_TRUE(error.IsError() && !error.IsOK() && !error.IsWarning());
  const MCStatus warning(120018, true);
  EXPECT_TRUE(warning.IsWarning() && !warning.IsOK() && !warning.IsError());
}

TEST(MCStatus, EqualityLooksAtEveryField) {
  const MCStatus status(120014, true);
  EXPECT_EQ(status, MCStatus(120014, true));
  EXPECT_FALSE(status == MCStatus(120014, false));
  EXPECT_FALSE(status == MCStatus(120015, true));
  for (unsigned int i = 0; i < 3; ++i) {
    MCStatus otherDiscrete = status;
    otherDiscrete.SetDiscreteDatum(i, 1);
    EXPECT_FALSE(status == otherDiscrete) << i;
    MCStatus otherScale = status;
    otherScale.SetScaleDatum(i, 0.5);
    EXPECT_FALSE(status == otherScale) << i;
    otherScale.SetScaleDatum(i, std::nan(""));
    EXPECT_FALSE(otherScale == MCStatus(otherScale)) << "a NaN equals nothing";
  }
}

}  // namespace
