#include "orif/lowerlayer/Automation.h"

#include <windows.h>

#include <objbase.h>
#include <oleauto.h>

#include <cstring>
#include <utility>
#include <vector>

#include "orif/base/Checked.h"
#include "orif/base/Fault.h"
#include "orif/lowerlayer/AutomationObject.h"
#include "orif/platform/WindowsText.h"

namespace orif {
namespace {

using platform::AutomationText;
using platform::SystemText;

std::string ErrorText(HRESULT result) { return SystemText(static_cast<DWORD>(result)); }

// Keeps the calling thread in an apartment. A thread that is already in one of another kind stays
// there, and is not taken out of it at the end.
class Apartment {
 public:
  Apartment() : entered_(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)) {
    if (FAILED(entered_) && entered_ != RPC_E_CHANGED_MODE) throw Fault(ErrorText(entered_));
  }
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;
  ~Apartment() {
    if (SUCCEEDED(entered_)) CoUninitialize();
  }

 private:
  HRESULT entered_;
};

// A text by reference, which the object may have replaced.
struct TextVariable {
  TextVariable() = default;
  TextVariable(const TextVariable&) = delete;
  TextVariable& operator=(const TextVariable&) = delete;
  ~TextVariable() { SysFreeString(text); }

  BSTR text = nullptr;
};

struct Release {
  void operator()(IUnknown* object) const { object->Release(); }
};
using Object = std::unique_ptr<IDispatch, Release>;

// The arguments of one call, in the reverse order that automation wants, and the texts among them.
class Arguments {
 public:
  explicit Arguments(std::span<const OrvexValue> values)
      : variants_(values.size()), texts_(values.size()) {
    for (std::size_t i = 0; i < values.size(); ++i) {
      const std::size_t place = values.size() - 1 - i;
      Convert(values[i], variants_[place], texts_[i].text);
    }
  }
  DISPPARAMS Parameters() { return {variants_.data(), nullptr, Narrow<UINT>(variants_.size()), 0}; }

 private:
  // The kinds are the codes of automation, and numbers and pointers lie alike in both unions.
  static void Convert(const OrvexValue& value, VARIANT& variant, BSTR& text) {
    static_assert(sizeof value.as == sizeof variant.llVal);
    variant.vt = value.kind;
    switch (value.kind) {
      case ORVEX_I2:
      case ORVEX_I4:
      case ORVEX_R4:
      case ORVEX_R8:
      case ORVEX_BOOLEAN:
      case ORVEX_I2 | ORVEX_BYREF:
      case ORVEX_I4 | ORVEX_BYREF:
      case ORVEX_R4 | ORVEX_BYREF:
        std::memcpy(&variant.llVal, &value.as, sizeof value.as);
        return;
      case ORVEX_TEXT:
      case ORVEX_TEXT | ORVEX_BYREF:
        text = platform::Wide({value.as.text, Narrow<std::size_t>(value.count)}).release();
        if (value.kind == ORVEX_TEXT)
          variant.bstrVal = text;
        else
          variant.pbstrVal = &text;
        return;
      default:
        throw Fault(Fault::TypeMismatch);
    }
  }

  std::vector<VARIANT> variants_;
  std::vector<TextVariable> texts_;
};

struct Result : VARIANT {
  Result() : VARIANT{} {}
  Result(const Result&) = delete;
  Result& operator=(const Result&) = delete;
  ~Result() { VariantClear(this); }
};

// How the object describes a call that failed inside it.
struct Exception : EXCEPINFO {
  Exception() : EXCEPINFO{} {}
  Exception(const Exception&) = delete;
  Exception& operator=(const Exception&) = delete;
  ~Exception() {
    for (OLECHAR* text : {bstrSource, bstrDescription, bstrHelpFile}) SysFreeString(text);
  }

  std::string Description() {
    if (pfnDeferredFillIn != nullptr) pfnDeferredFillIn(this);
    if (SysStringLen(bstrDescription) > 0) return platform::Narrow(bstrDescription);
    return scode != 0 ? ErrorText(scode) : Fault::AutomationError;
  }
};

class AutomationCore final : public Dispatch {
 public:
  explicit AutomationCore(IDispatch& object) : object_(&object) { object.AddRef(); }

  OrvexValue Invoke(std::int32_t id, OrvexCall call,
                    std::span<const OrvexValue> arguments) override {
    Arguments variants(arguments);
    DISPPARAMS parameters = variants.Parameters();
    DISPID put = DISPID_PROPERTYPUT;
    if (call == ORVEX_PUT) {
      parameters.rgdispidNamedArgs = &put;
      parameters.cNamedArgs = 1;
    }
    Result result;
    Exception exception;
    UINT wrong = 0;
    const HRESULT status =
        object_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, static_cast<WORD>(call), &parameters,
                        call == ORVEX_PUT ? nullptr : &result, &exception, &wrong);
    if (status == DISP_E_EXCEPTION) throw Fault(exception.Description());
    if (FAILED(status)) throw Fault(ErrorText(status));
    return Value(result);
  }

  IDispatch& Adapted() const { return *object_; }

  std::int32_t Lookup(std::string_view name) override {
    const AutomationText wide = platform::Wide(name);
    LPOLESTR text = wide.get();
    DISPID id = 0;
    const HRESULT status = object_->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_USER_DEFAULT, &id);
    if (FAILED(status)) throw Fault(ErrorText(status) + " " + std::string(name));
    return id;
  }

 private:
  OrvexValue Value(VARIANT& result) {
    OrvexValue value{};
    value.kind = result.vt;
    switch (result.vt) {
      case VT_EMPTY:
      case VT_I2:
      case VT_I4:
      case VT_R4:
      case VT_R8:
      case VT_BOOL:
        std::memcpy(&value.as, &result.llVal, sizeof value.as);
        return value;
      case VT_BSTR:
        text_ = platform::Narrow(result.bstrVal);
        value.count = Narrow<std::int32_t>(text_.size());
        value.as.text = text_.data();
        return value;
      default:
        // Converts an unknown kind to a real, which holds every 32-bit number. What cannot be
        // converted becomes a fault when the library uses it; an ignored result does no harm.
        if (SUCCEEDED(VariantChangeType(&result, &result, VARIANT_NOVALUEPROP, VT_R8))) {
          value.kind = ORVEX_R8;
          value.as.r8 = result.dblVal;
        }
        return value;
    }
  }

  // Declared first, so that it is left after the object is released.
  Apartment apartment_;
  Object object_;
  /// The text of the last result.
  std::string text_;
};

}  // namespace

std::shared_ptr<Dispatch> AdaptAutomation(IDispatch& object) {
  return std::make_shared<AutomationCore>(object);
}

IDispatch* OfferAutomation(std::shared_ptr<Dispatch> core) {
  if (core == nullptr) return nullptr;
  const auto* const adapter = dynamic_cast<const AutomationCore*>(core.get());
  if (adapter == nullptr) return MakeAutomationObject(std::move(core));
  adapter->Adapted().AddRef();
  return &adapter->Adapted();
}

std::shared_ptr<Dispatch> CreateAutomationCore(const std::string& name) {
  const Apartment apartment;
  const AutomationText wide = platform::Wide(name);
  CLSID identifier{};
  if (name.starts_with('{')) {
    if (FAILED(CLSIDFromString(wide.get(), &identifier))) {
      throw Fault(name + " is not a class identifier");
    }
  } else if (FAILED(CLSIDFromProgID(wide.get(), &identifier))) {
    throw Fault(name +
                " is not registered; register it, or name another component in "
                "ORVEX_COMMLIB");
  }
  void* created = nullptr;
  const HRESULT status =
      CoCreateInstance(identifier, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, &created);
  if (FAILED(status)) throw Fault(name + ": " + ErrorText(status));
  const Object object(static_cast<IDispatch*>(created));
  // Only a proxy for an object of another apartment has this interface. It would carry over one
  // element of an array, whatever the count of the call.
  void* security = nullptr;
  if (SUCCEEDED(object->QueryInterface(IID_IClientSecurity, &security))) {
    static_cast<IUnknown*>(security)->Release();
    throw Fault(name +
                " does not work in this thread's apartment; make the Core on a thread of a "
                "single-threaded one");
  }
  return AdaptAutomation(*object);
}

}  // namespace orif
