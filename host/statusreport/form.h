#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace statusreport
{

inline constexpr const char* kNamespace = "urn:iso:std:iso:20022:tech:xsd:pain.002.001.02";
inline constexpr const char* kMessageElement = "pain.002.001.02";

/// What the text of an element without children must be.
enum class TextForm
{
    None, ///< the element has children instead
    UpTo35,
    UpTo105,
    Moment,
    Count,
    Sum,
    Status,
    Reason,
};

/// A child that an element may have, at its place in the order.
struct Child
{
    const char* name;
    bool isRequired = false;
    bool isRepeatable = false;
    /// Of the message, but nothing that this system writes: its content is not looked into.
    bool isForeign = false;
};

struct Element
{
    const char* name;
    std::vector<Child> children;
    TextForm form = TextForm::None;
};

/// Null for an element of another message.
const Element* FindElement(std::string_view name);

/// A code and what it means.
struct Code
{
    const char* code;
    const char* words;
};

/// Null for a code that pain.002.001.02 does not have.
const Code* FindStatus(std::string_view code);
const Code* FindReason(std::string_view code);

/// Why a text has not the form, as "is no …, remedy"; empty when it has it.
std::string FaultOf(TextForm form, const std::string& utf8);

} // namespace statusreport
