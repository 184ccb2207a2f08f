#pragma once

#include "tests/model/tables.h"

#include <string>
#include <vector>

namespace model
{

/// "%f" of an amount, as statements take it.
std::string SixPlaces(double amount);

/// At least two places, at most six, no more than the value has.
Text AmountInMessage(double amount);

/// The English message of a number; arguments in their listed order, amounts written by
/// AmountInMessage. Only the catalogue's words are the library's own.
Text Message(unsigned int number, const std::vector<Text>& arguments = {});

} // namespace model
