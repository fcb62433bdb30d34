#pragma once

#include <gtest/gtest.h>

#include <string>

// Names the instances of a parameterised test after the `name` of their rows.
inline constexpr auto RowName = [](const auto& info) { return std::string(info.param.name); };
