#pragma once

// Bins made by hand: two attributes, one of them of categories, and a target of two classes.
inline constexpr char kHandMadeBins[] = R"({
  "format": "mcbin-bins", "version": 1, "tool": "", "algorithm": "supervised", "closed": "right",
  "settings": {"prebin_above": 0, "prebins": 2, "small_bins": 0},
  "source": {"name": "", "delimiter": ",", "na": ["NA"], "records": 8,
             "dropped": {"missing_weight": 0, "zero_weight": 0, "weight_rounded_to_zero": 0}},
  "attributes": [
    {"name": "a", "kind": "continuous", "user_missing": {"values": [9], "interval": {"low": 90}}},
    {"name": "c", "kind": "string-categorical", "categories": ["x", "y, z"],
     "user_missing": {"values": ["q"]}}],
  "targets": [{"name": "t", "kind": "string-categorical", "categories": ["yes", "no"]}],
  "results": [
    {"attribute": "a", "target": "t", "status": {"code": 0, "severity": "ok", "text": "ok"},
     "cut_points": [1, 2.5], "bin_weights": [4, 2, 2], "class_weights": [[3, 1], [0, 2], [1, 1]],
     "valid_weight": 8, "weight_with_missing": 8, "distinct_values": 5},
    {"attribute": "c", "target": "t", "status": {"code": 0, "severity": "ok", "text": "ok"},
     "cut_points": [0], "bin_weights": [4, 4], "class_weights": [[2, 2], [2, 2]],
     "valid_weight": 8, "weight_with_missing": 8, "distinct_values": 2}]})";
