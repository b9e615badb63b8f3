// CfgNumber: how configuration values are read as numbers, rounded and written back.
#pragma once

#include <QString>
#include <QStringView>
#include <optional>

namespace CfgNumber {

/// The number a value is, when the whole value (trimmed of blanks) is a decimal number:
/// sign, digits with an optional fraction, optional exponent. Nothing else counts (no hex, inf, nan).
std::optional<double> parse(QStringView text);
/// The leading decimal number of a text after leading blanks; 0 when it does not begin with one.
double numericValue(QStringView text);
/// Integer rounding: to the nearest integer, halves to the even neighbour.
double roundHalfEven(double value);
/// Halves away from zero (mouse sensitivity tenths only).
double roundHalfAway(double value);
/// An integral value written plainly, without exponent or decimals ("-0" reads "0").
QString formatInteger(double value);
/// Integers plainly, other numbers in their shortest exact decimal form without exponent.
QString formatNumber(double value);
/// A value known to the nearest tenth: 7 tenths reads 0.7, 10 tenths reads 1.
QString formatTenths(int tenths);
/// Clamps a rounded value to [minimum, maximum]; a value that is not a number gives minimum.
int clampToRange(double value, int minimum, int maximum);

} // namespace CfgNumber
