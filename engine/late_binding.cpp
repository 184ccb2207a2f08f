#include "engine/late_binding.h"

namespace engine
{

using port::DispatchInterface;
using port::DispatchType;

const DispatchInterface& RunOperations()
{
    static const DispatchInterface operations({
        {L"FMTConnect",
         7,
         {{L"client", DispatchType::Text}, {L"connection", DispatchType::LongByRef}}},
        {L"FMTDisconnect",
         9,
         {{L"connection", DispatchType::Long}, {L"status", DispatchType::LongByRef}}},
        {L"FMTGetWorkDescr",
         14,
         {{L"connection", DispatchType::Long},
          {L"format1", DispatchType::Text},
          {L"format2", DispatchType::Text},
          {L"work", DispatchType::Object},
          {L"found", DispatchType::LongByRef}}},
        {L"FMTWorkExec",
         17,
         {{L"connection", DispatchType::Long},
          {L"work", DispatchType::Object},
          {L"parameters", DispatchType::Text},
          {L"second", DispatchType::Text},
          {L"error", DispatchType::ShortByRef},
          {L"success", DispatchType::LongByRef}}},
        {L"FMTGetLastError",
         20,
         {{L"text", DispatchType::TextByRef},
          {L"reserved", DispatchType::LongByRef},
          {L"code", DispatchType::LongByRef}}},
    });
    return operations;
}

const DispatchInterface& WorkOperations()
{
    static const DispatchInterface operations({
        {L"FMTGetNbTrt", 17, {{L"count", DispatchType::ShortByRef}}},
        {L"FMTGetOptions", 21, {{L"flags", DispatchType::LongByRef}}},
        {L"FMTSetOptions", 22, {{L"flags", DispatchType::Long}}},
    });
    return operations;
}

} // namespace engine
