#pragma once

#include "host/authority/authority_map.h"
#include "host/scratch/copy.h"

#include <cstddef>
#include <string>
#include <vector>

namespace authority
{

/// An order that shows a finding, and what the library decided about it.
struct Witness
{
    scratch::Order order;
    std::string judgedBy; ///< empty: the whole contract; else which of its rules, in words
    scratch::Decision decision;
};

/// Something about the rules that their author may not have meant.
struct Finding
{
    std::string code; ///< stable; see kLintCodes
    std::string text;
    std::vector<Witness> witnesses;
};

struct LintCode
{
    const char* code;
    const char* meaning;
};

/// Every code, in the order of reporting.
const std::vector<LintCode>& LintCodes();

/// What is to be linted: one kind of order under one contract.
struct LintTask
{
    const rulebook::RuleBook& book; ///< what `copy` holds
    std::string cuid;               ///< findings about rules are about this contract's
    scratch::OrderKind kind;
    bool isOtherTypes = false;
    std::string today; ///< 2026-03-29: what expires before has expired
};

/// The findings, each with witnesses that the library has decided on the copy, which holds the book
/// again at the end. `judged` grows by the number of orders asked about.
std::vector<Finding> Lint(scratch::Copy& copy, const LintTask& task, std::size_t& judged);

} // namespace authority
