#pragma once

#include "tests/model/tables.h"

#include <rapidcheck.h>

#include <utility>
#include <vector>

// The texts that scenarios are made of: plain ones most often, and each trap now and then.

namespace model
{

template <typename Value>
using Weighted = std::vector<std::pair<int, Value>>;

/// One of the values, each by its weight; shrinks towards the first.
template <typename Value>
rc::Gen<Value> AnyOf(Weighted<Value> values)
{
    int total = 0;
    for (const auto& [weight, value] : values)
    {
        total += weight;
    }
    return rc::gen::map(rc::gen::inRange(0, total),
                        [values = std::move(values)](int place)
                        {
                            std::size_t index = 0;
                            while (place >= values[index].first)
                            {
                                place -= values[index++].first;
                            }
                            return values[index].second;
                        });
}

template <typename Value>
Value OneOf(Weighted<Value> values)
{
    return *AnyOf<Value>(std::move(values));
}

/// True in so many of a hundred cases; shrinks to false.
bool Chance(int percent);

rc::Gen<Text> AnyCertificateName();
rc::Gen<NullableText> AnyPersonName();
rc::Gen<NullableText> AnyOpposition();
rc::Gen<NullableText> AnyAmountText();
rc::Gen<Text> AnyFileName();
rc::Gen<Text> AnyOrderId();
rc::Gen<Text> AnyContractName();

/// The name in another case: of ASCII letters, which the database folds, or of all letters.
Text InAnyCase(const Text& name);

} // namespace model
