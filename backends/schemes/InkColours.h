#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace TkPPDUpdating {

/// A primary colour of printing: the letter by which PPDs call it, its English name, and where in
/// the colour circle the sRGB values lie that printers give for it.
struct PrimaryInkColour {
    std::string_view dye;
    std::string_view name;
    /// Degrees of hue, both included; none for black, which is known by its darkness.
    int firstHue = 0;
    int lastHue = -1;
};

/// Cyan, magenta, yellow and black.
std::span<const PrimaryInkColour> primaryInkColours();

/// The dyes that a printer's word for the colour of one ink or toner supply stands for.
///
/// - The name of a primary, whatever its case, is its letter ("cyan" is "C"); another name is
///   itself ("Photo Black").
/// - "#RRGGBB" (sRGB) is the letter of the primary that it is near, as printers give the colour on
///   paper: saturation and value are at least 60 % and the hue is the primary's; black is at most
///   #33 in each part. Several joined ("#00FFFF#FF00FF#FFFF00") are a supply of several dyes.
///   Another colour is no word of a PPD.
/// - "none", "unknown" and "other" are no colour, and neither is a text with a comma, which would
/// be
///   taken for two in a PPD's list of dyes.
///
/// Empty when there is none. The text is not looked at otherwise: whether it can stand in a PPD is
/// for the caller to find out.
std::vector<std::string> dyesOfInkColour(std::string_view colour);

}  // namespace TkPPDUpdating
