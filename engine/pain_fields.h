#pragma once

#include "engine/path_table.h"

#include <string_view>

namespace engine
{

/// The two ISO 20022 messages that are converted.
enum class PainMessage
{
    CreditTransfer, ///< pain.001
    DirectDebit,    ///< pain.008
};

/// What an element of the message means here. "Own" is the ordering side: debtor of a transfer,
/// creditor of a direct debit. What belongs to the file stands first, then what belongs to a group,
/// then what belongs to an order.
enum class PainField
{
    None,
    GroupHeader,
    MessageId,
    FileCount,
    FileSum,
    SenderName,
    Group,
    GroupId,
    GroupCount,
    GroupSum,
    GroupUrgency, ///< a code that may ask for haste
    ExecutionDate,
    OwnName,
    OwnIban,
    OwnOtherAccount, ///< in another form than an IBAN
    OwnAccountCurrency,
    OwnBank,
    OwnOtherBank, ///< in another form than a BIC
    CreditorId,
    Order,
    OrderUrgency,
    EndToEndId,
    InstructionId,
    InstructedAmount,
    EquivalentAmount,
    Name,
    Iban,
    OtherAccount,
    Bank,
    OtherBank,
    BankName,
    RemittanceText,
    RemittanceReference,
};

/// The elements of all versions of a message, paths from the message element's children on.
const PathTable<PainField>& PainPaths(PainMessage message);

/// Whether a local name is the message element of any version.
bool IsPainMessageElement(PainMessage message, std::string_view name);

} // namespace engine
