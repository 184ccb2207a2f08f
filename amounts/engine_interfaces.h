#pragma once

#include "port/com.h"

// The two dual interfaces of the format-conversion engine. Their operations are called by their
// positions in the interface table, so neither order nor number may change: reserved operations
// keep the places of those that nobody uses here and answer E_NOTIMPL.

namespace amounts
{

inline constexpr CLSID kRunClass = {
    0x4894D747, 0x9646, 0x40D9, {0xBF, 0xD9, 0x2A, 0x31, 0x05, 0x0B, 0xEC, 0x91}}; ///< IFmtRun
inline constexpr CLSID kWorkClass = {
    0xDEDEEEFD, 0xFD2E, 0x4E27, {0x8B, 0xEE, 0x01, 0x05, 0x64, 0xA2, 0x48, 0x6B}}; ///< IFmtWork
inline constexpr IID kRunInterface = {
    0x53CEAACA, 0x3421, 0x4DDD, {0x9C, 0x2C, 0x2A, 0xE5, 0x49, 0x22, 0xCF, 0xEE}}; ///< IFmtRun
inline constexpr IID kWorkInterface = {
    0xD586764A, 0xE6D9, 0x4A0B, {0x88, 0xF4, 0xA4, 0xA8, 0x24, 0x50, 0xC8, 0xE8}}; ///< IFmtWork

/// Option of a work: the order file is read and checked, no work file stays.
inline constexpr LONG kCheckOnly = 2;

/// Describes one work (a conversion).
struct IFmtWork : public IDispatch
{
    virtual HRESULT STDMETHODCALLTYPE Reserved7() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved8() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved9() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved10() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved11() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved12() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved13() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved14() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved15() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved16() { return E_NOTIMPL; }
    /// 17: number of treatments of the work.
    virtual HRESULT STDMETHODCALLTYPE FMTGetNbTrt(SHORT* count) = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved18() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved19() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved20() { return E_NOTIMPL; }
    /// 21 and 22: option flags.
    virtual HRESULT STDMETHODCALLTYPE FMTGetOptions(LONG* flags) = 0;
    virtual HRESULT STDMETHODCALLTYPE FMTSetOptions(LONG flags) = 0; ///< as above
};

/// Holds a connection to the engine and executes works.
struct IFmtRun : public IDispatch
{
    /// 7: the connection's number is neither 0 nor -1.
    virtual HRESULT STDMETHODCALLTYPE FMTConnect(BSTR client, LONG* connection) = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved8() { return E_NOTIMPL; }
    /// 9: closes the connection.
    virtual HRESULT STDMETHODCALLTYPE FMTDisconnect(LONG connection, LONG* status) = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved10() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved11() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved12() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved13() { return E_NOTIMPL; }
    /// 14: fills the work object for a pair of format texts; `found` 0 when there is no such work.
    virtual HRESULT STDMETHODCALLTYPE FMTGetWorkDescr(LONG connection, BSTR format1, BSTR format2,
                                                      IFmtWork* work, LONG* found) = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved15() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved16() { return E_NOTIMPL; }
    /// 17: runs the work. `parameters` has one argument for each treatment, joined by " | "; each
    /// is `"order file" "output file" ;`. `second` is empty.
    virtual HRESULT STDMETHODCALLTYPE FMTWorkExec(LONG connection, IFmtWork* work, BSTR parameters,
                                                  BSTR second, SHORT* error, LONG* success) = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved18() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved19() { return E_NOTIMPL; }
    /// 20: text and number of the last failure; the caller frees the text.
    virtual HRESULT STDMETHODCALLTYPE FMTGetLastError(BSTR* text, LONG* reserved, LONG* code) = 0;
};

} // namespace amounts
