#pragma once

#include <map>
#include <string>
#include <vector>

namespace testing_support
{

using MetricLabels = std::map<std::string, std::string>;

struct MetricSample
{
    std::string name;
    MetricLabels labels;
    double value = 0.0;
};

struct MetricFamilyRead
{
    std::string name;
    std::string type;
    std::vector<MetricSample> samples;
};

/// A text of metrics, read strictly as the format (version 0.0.4) says, and more: each family has
/// its help, its type and its samples at one place, a counter ends in _total, and buckets rise.
/// Raises std::runtime_error that names the line.
class ExpositionReader
{
public:
    explicit ExpositionReader(const std::string& text);

    const std::vector<MetricFamilyRead>& Families() const noexcept { return m_families; }
    std::vector<std::string> FamilyNames() const;

    /// The sum of the samples of this name that have these labels, maybe among others; 0 for none.
    double Sum(const std::string& name, const MetricLabels& labels = {}) const;
    /// The number of those samples.
    std::size_t Count(const std::string& name, const MetricLabels& labels = {}) const;

private:
    std::vector<MetricFamilyRead> m_families;
};

} // namespace testing_support
