#include "tests/engine/order_texts.h"

namespace engine_tests
{

std::optional<engine::Failure> FailureOf(engine::Work work, const std::string& order,
                                         const std::string& stem)
{
    try
    {
        engine::Convert(work, order, stem);
    }
    catch (const engine::Failure& failure)
    {
        return failure;
    }
    return std::nullopt;
}

std::string Transfer(const std::string& name)
{
    return "<Document><CstmrCdtTrfInitn><GrpHdr><NbOfTxs>1</NbOfTxs></GrpHdr><PmtInf><CdtTrfTxInf>"
           "<Amt><InstdAmt Ccy=\"EUR\">1.00</InstdAmt></Amt><Cdtr><Nm>" +
           name + "</Nm></Cdtr></CdtTrfTxInf></PmtInf></CstmrCdtTrfInitn></Document>";
}

std::string RecordsWithoutLineEnds(std::size_t length)
{
    std::string records;
    for (const char* const code : {"0302", "0602", "0802"})
    {
        std::string record = code;
        record.resize(length, ' ');
        record.replace(102, 16, "0000000000010000");
        records += record;
    }
    return records;
}

} // namespace engine_tests
