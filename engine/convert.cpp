#include "engine/convert.h"

#include "engine/cfonb160_converter.h"
#include "engine/cfonb320_converter.h"
#include "engine/conversion_output.h"
#include "engine/failure.h"
#include "engine/mt101_converter.h"
#include "engine/order_file.h"
#include "engine/pain_converter.h"
#include "support/casefold.h"

namespace engine
{

namespace
{

struct WorkName
{
    const char* format1;
    const char* format2;
    Work work;
};

constexpr WorkName kWorks[] = {
    {"ISO20022", "pain.001", Work::Pain001}, {"ISO20022", "pain.008", Work::Pain008},
    {"CFONB", "160", Work::Cfonb160},        {"CFONB", "320", Work::Cfonb320},
    {"SWIFT", "MT101", Work::Mt101},
};

void RunConverter(Work work, OrderFile& file, ConversionOutput& output)
{
    switch (work)
    {
    case Work::Pain001:
        return ConvertPain(PainMessage::CreditTransfer, file, output);
    case Work::Pain008:
        return ConvertPain(PainMessage::DirectDebit, file, output);
    case Work::Cfonb160:
        return ConvertCfonb160(file, output);
    case Work::Cfonb320:
        return ConvertCfonb320(file, output);
    case Work::Mt101:
        return ConvertMt101(file, output);
    }
}

} // namespace

bool FindWork(const std::string& format1, const std::string& format2, Work& work)
{
    for (const WorkName& name : kWorks)
    {
        if (support::EqualIgnoringAsciiCase(format1.c_str(), name.format1) &&
            support::EqualIgnoringAsciiCase(format2.c_str(), name.format2))
        {
            work = name.work;
            return true;
        }
    }
    return false;
}

void Convert(Work work, const std::string& orderFile, const std::string& stem, ConversionMode mode)
{
    OrderFile file(orderFile);
    Convert(work, file, stem, mode);
}

void Convert(Work work, OrderFile& file, const std::string& stem, ConversionMode mode)
{
    ConversionOutput output(stem);
    try
    {
        RunConverter(work, file, output);
    }
    catch (const Failure&)
    {
        // A file that changed under the reader may look malformed.
        file.CheckUnchanged();
        throw;
    }
    file.CheckUnchanged();
    if (mode == ConversionMode::WriteWorkFiles)
    {
        output.Publish();
    }
}

} // namespace engine
