#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace support
{

/// A label of a sample; the value is UTF-8.
struct MetricLabel
{
    const char* name;
    std::string_view value;
};

/// What a family of samples is.
struct MetricFamily
{
    const char* name;
    const char* type; ///< counter, gauge or histogram
    const char* help; ///< one line, without a backslash
};

/// Metrics in the text format that Prometheus reads (version 0.0.4), a family after the other.
class Exposition
{
public:
    /// `source` is a label of every sample, UTF-8: samples of several files differ by it.
    explicit Exposition(std::string_view source);

    void Begin(const MetricFamily& family);
    /// A sample of the family begun last; `ending` goes behind its name.
    void Sample(std::string_view value, std::initializer_list<MetricLabel> labels = {},
                const char* ending = "");

    const std::string& Text() const noexcept { return m_text; }

private:
    void AppendLabel(const char* name, std::string_view value);

    std::string m_source;
    std::string m_family;
    std::string m_text;
};

} // namespace support
