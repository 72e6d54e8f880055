#include "platform/MachineIdentity.h"

#include <QString>
#include <QStringList>

#include <chrono>
#include <future>
#include <memory>
#include <string>
#include <thread>

// Each needs the one before.
// clang-format off
#include <windows.h>
#include <wbemidl.h>
// clang-format on

namespace platform {

namespace {

// The service that answers may hang, or not have started yet when the machine has just been switched on.
constexpr std::chrono::seconds patience{60};
constexpr long msForAnObject = 20000;

/// A text that the COM library counts as its own.
class ComText
{
public:
    explicit ComText(const wchar_t* text)
        : m_text(SysAllocString(text))
    {
    }
    ~ComText() { SysFreeString(m_text); }
    ComText(const ComText&) = delete;
    ComText& operator=(const ComText&) = delete;
    operator BSTR() const { return m_text; }

private:
    BSTR m_text;
};

/// A COM object, released at the end.
template <typename Object>
class ComPointer
{
public:
    ComPointer() = default;
    ~ComPointer()
    {
        if (m_object)
            m_object->Release();
    }
    ComPointer(const ComPointer&) = delete;
    ComPointer& operator=(const ComPointer&) = delete;
    Object** out() { return &m_object; }
    Object* operator->() const { return m_object; }
    Object* get() const { return m_object; }

private:
    Object* m_object = nullptr;
};

/// The hardware classes of the local machine, asked for as the present user.
bool connectTo(ComPointer<IWbemServices>& services)
{
    ComPointer<IWbemLocator> locator;
    if (FAILED(CoCreateInstance(CLSID_WbemLocator, nullptr, CLSCTX_INPROC_SERVER, IID_IWbemLocator,
                                reinterpret_cast<void**>(locator.out()))))
        return false;
    const ComText place(L"ROOT\\CIMV2");
    if (FAILED(locator->ConnectServer(place, nullptr, nullptr, nullptr, WBEM_FLAG_CONNECT_USE_MAX_WAIT, nullptr,
                                      nullptr, services.out())))
        return false;
    return SUCCEEDED(CoSetProxyBlanket(services.get(), RPC_C_AUTHN_WINNT, RPC_C_AUTHZ_NONE, nullptr,
                                       RPC_C_AUTHN_LEVEL_CALL, RPC_C_IMP_LEVEL_IMPERSONATE, nullptr, EOAC_NONE));
}

/// The text of a property of the first object of a class; empty when there is none.
QString property(IWbemServices* services, const wchar_t* className, const wchar_t* name)
{
    const ComText language(L"WQL");
    const ComText query((std::wstring(L"SELECT * FROM ") + className).c_str());
    ComPointer<IEnumWbemClassObject> objects;
    if (FAILED(services->ExecQuery(language, query, WBEM_FLAG_FORWARD_ONLY | WBEM_FLAG_RETURN_IMMEDIATELY, nullptr,
                                   objects.out())))
        return {};
    ComPointer<IWbemClassObject> object;
    ULONG count = 0;
    if (objects->Next(msForAnObject, 1, object.out(), &count) != WBEM_S_NO_ERROR || count != 1)
        return {};
    VARIANT value;
    VariantInit(&value);
    QString text;
    if (SUCCEEDED(object->Get(name, 0, &value, nullptr, nullptr)) && value.vt == VT_BSTR)
        text = QString::fromWCharArray(value.bstrVal);
    VariantClear(&value);
    return text.trimmed();
}

/// Whether a maker really entered something; many leave a text such as "Default string" or nothing but F.
bool isStated(const QString& text)
{
    static const QStringList empty{
        QStringLiteral("None"), QStringLiteral("Default string"), QStringLiteral("To be filled by O.E.M."),
        QStringLiteral("FFFFFFFF-FFFF-FFFF-FFFF-FFFFFFFFFFFF"), QStringLiteral("00000000-0000-0000-0000-000000000000")};
    return !text.isEmpty() && !empty.contains(text, Qt::CaseInsensitive);
}

QByteArray readHardware()
{
    ComPointer<IWbemServices> services;
    if (!connectTo(services))
        return {};
    const QString stated[] = {property(services.get(), L"Win32_ComputerSystemProduct", L"UUID"),
                              property(services.get(), L"Win32_BaseBoard", L"SerialNumber"),
                              property(services.get(), L"Win32_Processor", L"ProcessorId")};
    // A processor's identity is that of its type; alone it identifies no machine.
    if (!isStated(stated[0]) && !isStated(stated[1]))
        return {};
    return QStringList{stated[0], stated[1], stated[2]}.join(QLatin1Char('\n')).toUtf8();
}

} // namespace

QByteArray machineIdentity()
{
    const auto answer = std::make_shared<std::promise<QByteArray>>();
    std::future<QByteArray> identity = answer->get_future();
    // On a thread of its own, since the caller's may have joined COM in a way that does not go with this one, and left
    // to itself when it takes too long.
    std::thread([answer] {
        const bool joined = SUCCEEDED(CoInitializeEx(nullptr, COINIT_MULTITHREADED));
        const QByteArray read = joined ? readHardware() : QByteArray();
        if (joined)
            CoUninitialize();
        answer->set_value(read);
    }).detach();
    return identity.wait_for(patience) == std::future_status::ready ? identity.get() : QByteArray();
}

} // namespace platform
