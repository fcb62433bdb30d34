#include "binmodel/report/svgchart.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "binmodel/text/displaytext.h"
#include "binmodel/text/escape.h"
#include "binmodel/text/number.h"

namespace MCBinModel {

namespace {

// All lengths are pixels at the natural size.
constexpr double kLeft = 56.0;
constexpr double kRight = 8.0;
constexpr double kTop = 24.0;
constexpr double kMostPlotWidth = 836.0;
constexpr double kLeastPlotWidth = 220.0;
constexpr double kMostSlotWidth = 72.0;
constexpr double kMostCategoryWidth = 96.0;
constexpr double kLabelledSlotWidth = 40.0;  // of categories that all have their label
constexpr double kWideSlots = 6.0;           // more bins than these are narrower
constexpr double kLaterSlotWidth = 24.0;     // what each of them adds
constexpr double kLeastScale = 0.8;          // on a narrow screen; then the chart scrolls
constexpr double kMissingGap = 14.0;
constexpr double kMostMissingWidth = 64.0;
constexpr double kLeastMissingWidth = 48.0;
constexpr double kWeightHeight = 130.0;
constexpr double kPanelGap = 38.0;
constexpr double kShareHeight = 80.0;
constexpr double kLabelHeight = 24.0;
constexpr double kCharacterWidth = 6.6;
constexpr double kPrintedCharacterWidth =
    8.0;  // on paper charts are smaller, their letters less so
constexpr std::size_t kLongestLabel = 18;
constexpr double kLeastRange = 1e-300;  // of an axis
constexpr std::size_t kMostMarks = 80;  // bins, for a dot on each point of a line

// With two decimals at most and no zeros at the end.
std::string Coord(double value) {
  std::string text = FormatFixed(value, 2);
  text.erase(text.find_last_not_of('0') + 1);
  if (text.back() == '.') text.pop_back();
  return text == "-0" ? "0" : text;
}

// A step of 1, 2 or 5 times a power of ten that divides `range` into at most `steps`.
double NiceStep(double range, int steps) {
  const double rough = range / steps;
  const double power = std::pow(10.0, std::floor(std::log10(rough)));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (factor * power >= rough * (1.0 - 1e-9)) return factor * power;
  }
  return 10.0 * power;
}

// 1500000 is "1.5M".
std::string AxisNumber(double value) {
  struct Unit {
    double size;
    const char* sign;
  };
  constexpr std::array<Unit, 4> kUnits = {{{1e12, "T"}, {1e9, "G"}, {1e6, "M"}, {1e3, "k"}}};
  for (const Unit& unit : kUnits) {
    if (value >= 10.0 * unit.size || (value >= unit.size && unit.size > 1e3)) {
      return fmt::format("{:.6g}{}", value / unit.size, unit.sign);
    }
  }
  return fmt::format("{:.6g}", value);
}

std::string AxisShare(double share) { return fmt::format("{:.4g}%", 100.0 * share); }

// A vertical axis from 0 upwards between two heights.
class Axis {
 public:
  Axis(double top, double height, double largest, int steps)
      : fBottom(top + height), fStep(NiceStep(largest > kLeastRange ? largest : 1.0, steps)) {
    fTickCount = static_cast<int>(std::ceil(largest / fStep - 1e-9));
    if (fTickCount < 1) fTickCount = 1;
    fPerUnit = height / (fTickCount * fStep);
  }

  double Y(double value) const { return fBottom - value * fPerUnit; }
  double GetBottom() const { return fBottom; }

  // Grid lines with their labels.
  template <typename Label>
  std::string Render(double left, double right, Label label) const {
    std::string svg;
    for (int tick = 0; tick <= fTickCount; ++tick) {
      const std::string y = Coord(Y(tick * fStep));
      svg += fmt::format("<path class=\"{}\" d=\"M{} {}H{}\"/>", tick == 0 ? "base" : "grid",
                         Coord(left), y, Coord(right));
      svg += fmt::format("<text class=\"end\" x=\"{}\" y=\"{}\" dy=\".32em\">{}</text>",
                         Coord(left - 6.0), y, label(tick * fStep));
    }
    return svg;
  }

 private:
  double fBottom;
  double fStep;
  double fPerUnit = 0.0;
  int fTickCount = 0;
};

class BinChartWriter {
 public:
  explicit BinChartWriter(const BinChart& chart)
      : fChart(chart),
        fSlots(static_cast<double>(chart.bins.size())),
        fPlotWidth(PlotWidth()),
        fSlotWidth(SlotWidth()),
        fBinsRight(kLeft + fSlots * fSlotWidth),
        fWeights(kTop, kWeightHeight, LargestWeight(), 4),
        fShares(kTop + kWeightHeight + kPanelGap, kShareHeight, LargestShare(), 3) {}

  std::string Render() {
    const double right = HasMissing() ? fBinsRight + kMissingGap + MissingWidth() : fBinsRight;
    fWidth = std::ceil(right + kRight + LastLabelOverhang());
    const std::string width = Coord(fWidth);
    const std::string height = Coord(Bottom() + kLabelHeight);
    std::string svg = fmt::format(
        "<svg viewBox=\"0 0 {0} {1}\" width=\"{0}\" height=\"{1}\" style=\"min-width:{2}px\" "
        "role=\"img\" aria-label=\"{3}\">",
        width, height, Coord(std::floor(kLeastScale * fWidth)), HtmlText(fChart.description));
    svg += Caption("weight", kTop) + fWeights.Render(kLeft, right, AxisNumber);
    svg += Bars() + MissingBar() + Reference();
    if (fChart.lineCount > 0) {
      svg += Caption(fChart.lineCaption, kTop + kWeightHeight + kPanelGap);
      svg += fShares.Render(kLeft, HasMissingParts() ? right : fBinsRight, AxisShare);
      svg += Overall() + Lines() + MissingMarks();
    }
    return svg + Labels() + Tooltips() + "</svg>";
  }

 private:
  bool HasMissing() const { return fChart.missing.weight > 0.0; }
  bool HasMissingParts() const { return HasMissing() && !fChart.missing.parts.empty(); }

  bool HasCategories() const { return !fChart.binLabels.empty(); }

  double PlotWidth() const {
    const double slotWidth = HasCategories() ? kMostCategoryWidth : kMostSlotWidth;
    return std::clamp(slotWidth * std::min(fSlots, kWideSlots) +
                          kLaterSlotWidth * std::max(fSlots - kWideSlots, 0.0),
                      kLeastPlotWidth, kMostPlotWidth);
  }

  // All bins are equally wide, and so is the missing one within its limits.
  double SlotWidth() const {
    if (!HasMissing()) return fPlotWidth / fSlots;
    const double shared = (fPlotWidth - kMissingGap) / (fSlots + 1.0);
    const double missing = std::clamp(shared, kLeastMissingWidth, kMostMissingWidth);
    return (fPlotWidth - kMissingGap - missing) / fSlots;
  }

  // Above a panel.
  std::string Caption(const std::string& text, double panelTop) const {
    const auto room = static_cast<std::size_t>(fWidth / kCharacterWidth);
    return fmt::format("<text class=\"cap\" x=\"0\" y=\"{}\">{}</text>", Coord(panelTop - 11.0),
                       HtmlText(ElideText(text, room)));
  }

  double MissingWidth() const { return fPlotWidth - kMissingGap - fSlots * fSlotWidth; }

  double LastLabelOverhang() const { return HasMissing() ? 0.0 : 10.0; }

  // A missing bar that would dwarf the others is cut off instead.
  double LargestWeight() const {
    double largest = fChart.referenceWeight.value_or(0.0);
    for (const BinChart::Bin& bin : fChart.bins) largest = std::max(largest, bin.weight);
    return std::max(largest, std::min(fChart.missing.weight, 1.5 * largest));
  }

  double LargestShare() const {
    double largest = 0.0;
    for (const double share : fChart.overallShares) largest = std::max(largest, share);
    for (const BinChart::Bin& bin : fChart.bins) {
      for (std::size_t line = 0; line < fChart.lineCount; ++line) {
        if (bin.weight > 0.0) largest = std::max(largest, bin.parts[line] / bin.weight);
      }
    }
    for (std::size_t line = 0; HasMissingParts() && line < fChart.lineCount; ++line) {
      largest = std::max(largest, fChart.missing.parts[line] / fChart.missing.weight);
    }
    return std::min(largest, 1.0);
  }

  double Bottom() const {
    return fChart.lineCount > 0 ? fShares.GetBottom() : fWeights.GetBottom();
  }

  double BinLeft(std::size_t bin) const { return kLeft + static_cast<double>(bin) * fSlotWidth; }
  double BinCentre(std::size_t bin) const { return BinLeft(bin) + fSlotWidth / 2.0; }

  double BarGap() const { return fSlotWidth > 12.0 ? 3.0 : fSlotWidth > 4.0 ? 1.0 : 0.0; }

  static std::string BarPath(double x, double width, double top, double bottom) {
    return fmt::format("M{} {}h{}V{}h-{}z", Coord(x), Coord(top), Coord(width), Coord(bottom),
                       Coord(width));
  }

  // One path for each part, whatever the number of bins: the page stays small.
  std::string Bars() const {
    const std::size_t partCount = fChart.bins.front().parts.size();
    std::vector<std::string> paths(partCount);
    for (std::size_t bin = 0; bin < fChart.bins.size(); ++bin) {
      double below = 0.0;
      for (std::size_t part = 0; part < partCount; ++part) {
        const double above = below + fChart.bins[bin].parts[part];
        if (above > below) {
          paths[part] += BarPath(BinLeft(bin) + BarGap() / 2.0, fSlotWidth - BarGap(),
                                 fWeights.Y(above), fWeights.Y(below));
        }
        below = above;
      }
    }
    std::string svg;
    for (std::size_t part = 0; part < partCount; ++part) {
      if (!paths[part].empty())
        svg += fmt::format("<path class=\"k{}\" d=\"{}\"/>", part, paths[part]);
    }
    return svg;
  }

  double MissingLeft() const { return fBinsRight + kMissingGap; }
  double MissingCentre() const { return MissingLeft() + MissingWidth() / 2.0; }

  std::string MissingBar() const {
    if (!HasMissing()) return {};
    const std::string centre = Coord(MissingCentre());
    const double wanted = fWeights.Y(fChart.missing.weight);
    const bool cutOff = wanted < kTop;
    std::string svg = HasMissingParts() ? MissingParts(cutOff ? kTop : wanted)
                                        : HatchedBar(cutOff ? kTop : wanted);
    svg += fmt::format("<text class=\"mid\" x=\"{}\" y=\"{}\">missing</text>", centre,
                       Coord(fWeights.GetBottom() + 15.0));
    if (cutOff) {
      svg += fmt::format("<text class=\"mid\" x=\"{}\" y=\"{}\">\u2191 {}</text>", centre,
                         Coord(kTop - 5.0), AxisNumber(fChart.missing.weight));
    }
    return svg;
  }

  std::string HatchedBar(double top) const {
    return fmt::format("<path class=\"missing\" d=\"{}\"><title>{}</title></path>",
                       BarPath(MissingLeft(), MissingWidth(), top, fWeights.GetBottom()),
                       TooltipText(fChart.missing.tooltip));
  }

  // One that is cut off keeps the shares of its parts.
  std::string MissingParts(double top) const {
    const double perUnit = (fWeights.GetBottom() - top) / fChart.missing.weight;
    std::string svg;
    double bottom = fWeights.GetBottom();
    for (std::size_t part = 0; part < fChart.missing.parts.size(); ++part) {
      const double height = fChart.missing.parts[part] * perUnit;
      if (height <= 0.0) continue;
      svg += fmt::format("<path class=\"k{}\" d=\"{}\"/>", part,
                         BarPath(MissingLeft(), MissingWidth(), bottom - height, bottom));
      bottom -= height;
    }
    return svg;
  }

  std::string MissingMarks() const {
    std::string svg;
    for (std::size_t line = 0; HasMissingParts() && line < fChart.lineCount; ++line) {
      const double share = fChart.missing.parts[line] / fChart.missing.weight;
      svg += Mark(line, Coord(MissingCentre()), Coord(fShares.Y(share)));
    }
    return svg;
  }

  static std::string Mark(std::size_t line, const std::string& x, const std::string& y) {
    return fmt::format("<circle class=\"k{}\" cx=\"{}\" cy=\"{}\" r=\"3\"/>", line, x, y);
  }

  std::string Reference() const {
    if (!fChart.referenceWeight) return {};
    return fmt::format("<path class=\"ref\" d=\"M{} {}H{}\"/>", Coord(kLeft),
                       Coord(fWeights.Y(*fChart.referenceWeight)), Coord(fBinsRight));
  }

  std::string Overall() const {
    std::string svg;
    for (std::size_t line = 0; line < fChart.overallShares.size(); ++line) {
      svg += fmt::format("<path class=\"ref l{}\" d=\"M{} {}H{}\"/>", line, Coord(kLeft),
                         Coord(fShares.Y(fChart.overallShares[line])), Coord(fBinsRight));
    }
    return svg;
  }

  // A bin without weight has no share: the line has a gap there. Categories have no order that a
  // line could follow.
  std::string Lines() const {
    std::string svg;
    for (std::size_t line = 0; line < fChart.lineCount; ++line) {
      std::string path;
      std::string marks;
      bool penDown = false;
      for (std::size_t bin = 0; bin < fChart.bins.size(); ++bin) {
        const double weight = fChart.bins[bin].weight;
        if (weight > 0.0) {
          const std::string x = Coord(BinCentre(bin));
          const std::string y = Coord(fShares.Y(fChart.bins[bin].parts[line] / weight));
          path += fmt::format("{}{} {}", penDown ? 'L' : 'M', x, y);
          marks += Mark(line, x, y);
        }
        penDown = weight > 0.0;
      }
      const bool many = fChart.bins.size() > kMostMarks && !HasCategories();
      if (!HasCategories()) {
        svg +=
            fmt::format("<path class=\"line l{}{}\" d=\"{}\"/>", line, many ? " thin" : "", path);
      }
      if (!many) svg += marks;
    }
    return svg;
  }

  // How many characters a label may have. Those of categories are cut off rather than left out.
  std::size_t LongestLabel() const {
    if (!HasCategories() || fSlotWidth < kLabelledSlotWidth) return kLongestLabel;
    return static_cast<std::size_t>(fSlotWidth / kPrintedCharacterWidth - 0.5);
  }

  // Every n-th label, n as small as their widths allow.
  std::string Labels() const {
    const bool atBorders = !HasCategories();
    const std::vector<std::string>& labels = atBorders ? fChart.borderLabels : fChart.binLabels;
    std::vector<std::string> shown;
    std::size_t longest = 0;
    for (const std::string& label : labels) {
      shown.push_back(ElideText(label, LongestLabel()));
      longest = std::max(longest, DisplayWidth(shown.back()));
    }
    const double needed = (static_cast<double>(longest) + 0.5) * kPrintedCharacterWidth;
    const auto every = static_cast<std::size_t>(std::max(1.0, std::ceil(needed / fSlotWidth)));
    std::string svg;
    std::string ticks;
    for (std::size_t i = (every - 1) / 2; i < shown.size(); i += every) {
      const double x = atBorders ? BinLeft(i + 1) : BinCentre(i);
      svg += fmt::format("<text class=\"mid\" x=\"{}\" y=\"{}\">{}</text>", Coord(x),
                         Coord(Bottom() + 17.0), HtmlText(shown[i]));
      ticks += fmt::format("M{} {}v5", Coord(x), Coord(Bottom()));
    }
    return fmt::format("<path class=\"base\" d=\"{}\"/>", ticks) + svg;
  }

  std::string Tooltips() const {
    std::string svg;
    for (std::size_t bin = 0; bin < fChart.bins.size(); ++bin) {
      svg += Tooltip(BinLeft(bin), fSlotWidth, fChart.bins[bin]);
    }
    if (HasMissingParts()) svg += Tooltip(MissingLeft(), MissingWidth(), fChart.missing);
    return svg;
  }

  std::string Tooltip(double left, double width, const BinChart::Bin& bin) const {
    return fmt::format(
        "<rect class=\"h\" x=\"{}\" y=\"{}\" width=\"{}\" height=\"{}\"><title>{}</title></rect>",
        Coord(left), Coord(kTop), Coord(width), Coord(Bottom() - kTop), TooltipText(bin.tooltip));
  }

  static std::string TooltipText(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) text += (text.empty() ? "" : "\n") + HtmlText(line);
    return text;
  }

  const BinChart& fChart;
  const double fSlots;
  const double fPlotWidth;
  const double fSlotWidth;
  const double fBinsRight;
  const Axis fWeights;
  const Axis fShares;
  double fWidth = 0.0;
};

}  // namespace

std::string RenderBinChart(const BinChart& chart) { return BinChartWriter(chart).Render(); }

}  // namespace MCBinModel
