#include "host/display_command.h"

#include "host/conversion.h"
#include "host/display_json.h"
#include "host/display_text.h"
#include "host/exit_status.h"
#include "host/file_errors.h"
#include "host/output.h"

namespace host
{

namespace
{

constexpr const char* kErrors = "\n ERROR \n";

void Write(const OrderSource& order, const DisplayProfile& profile, OrderWalk& walk,
           const DisplayColumns& remittance, const DisplayColumns& orders, FileErrors& errors)
{
    JsonStream json;
    json.Text("file", order.shown);
    json.Text("format", order.format.Name());
    json.Text("profile", profile.path);
    DisplayJson display(json, walk, profile, remittance, orders);
    walk.Show(display);
    display.End();
    errors.Write(json);
    json.Finish();
}

void PrintWords(const OrderSource& order, OrderWalk& walk, const DisplayColumns& remittance,
                const DisplayColumns& orders, FileErrors& errors)
{
    {
        DisplayText display(remittance, orders, order.shown);
        walk.Show(display);
    }
    if (!errors.IsEmpty())
    {
        Print(kErrors);
        errors.Print();
    }
}

} // namespace

int RunDisplay(const OptionValues& values)
{
    const OrderSource order = ReadOrderSource(values, "display");
    const DisplayProfile profile = FindDisplayProfile(order.format);
    Conversion conversion(order);
    OrderWalk walk(order.path);
    FileErrors errors(order.path);
    const DisplayColumns remittance(walk.Remittances(), profile.remittanceDisplay, profile.path);
    const DisplayColumns orders(walk.Orders(), profile.orderDisplay, profile.path);
    conversion.Remove();
    const int status = errors.IsEmpty() ? kDone : kFindings;
    values.IsOn("json") ? Write(order, profile, walk, remittance, orders, errors)
                        : PrintWords(order, walk, remittance, orders, errors);
    return status;
}

} // namespace host
