// Variant conversions and the _com_error value.
#include "com/Variant.h"

#include <gtest/gtest.h>

#include "com/ComError.h"
#include "com/Variant_testing.h"
#include "support/TestName.h"

namespace {

struct ConversionCase {
  const char* name;
  VARIANT source;
  VARTYPE target;
  HRESULT expected;
  VARIANT result;  // meaningful when expected is S_OK
};

class VariantChangeTypeCases : public ::testing::TestWithParam<ConversionCase> {};

TEST_P(VariantChangeTypeCases, ConvertsOrFailsLikeThePlatform) {
  const ConversionCase& c = GetParam();
  const VARIANT untouched = _variant_t(u"untouched");
  VARIANT dest = untouched;
  EXPECT_EQ(VariantChangeType(&dest, &c.source, 0, c.target), c.expected);
  const VARIANT& want = c.expected == S_OK ? c.result : untouched;
  EXPECT_EQ(dest.vt, want.vt);
  if (want.vt == VT_BSTR) {
    EXPECT_EQ(dest.bstrVal, want.bstrVal);
  }
  if (want.vt == VT_I4) {
    EXPECT_EQ(dest.lVal, want.lVal);
  }
  if (want.vt == VT_INT) {
    EXPECT_EQ(dest.intVal, want.intVal);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Variant, VariantChangeTypeCases,
    ::testing::Values(ConversionCase{"empty to text", VARIANT{}, VT_BSTR, S_OK, _variant_t(u"")},
                      ConversionCase{"empty to number", VARIANT{}, VT_I4, S_OK, _variant_t(0)},
                      ConversionCase{"int to text", _variant_t(7, VT_INT), VT_BSTR, S_OK, _variant_t(u"7")},
                      ConversionCase{"text to number", _variant_t(u" +12 "), VT_I4, S_OK, _variant_t(12)},
                      ConversionCase{"number to int", _variant_t(5), VT_INT, S_OK, _variant_t(5, VT_INT)},
                      ConversionCase{"word to number", _variant_t(u"twelve"), VT_I4, DISP_E_TYPEMISMATCH, {}},
                      ConversionCase{"trailing junk", _variant_t(u"12a"), VT_I4, DISP_E_TYPEMISMATCH, {}},
                      ConversionCase{"too big", _variant_t(u"2147483648"), VT_I4, DISP_E_OVERFLOW, {}},
                      ConversionCase{"unknown type", _variant_t(u"1"), 4, DISP_E_BADVARTYPE, {}}),
    [](const auto& param) { return TestName(param.param.name); });

TEST(Variant, ConvertsInPlaceAndRefusesNullArguments) {
  VARIANT value = _variant_t(99);
  ASSERT_EQ(VariantChangeType(&value, &value, 0, VT_BSTR), S_OK);
  EXPECT_EQ(value.bstrVal, u"99");
  EXPECT_EQ(VariantChangeType(nullptr, &value, 0, VT_BSTR), E_POINTER);
  EXPECT_EQ(VariantChangeType(&value, nullptr, 0, VT_BSTR), E_POINTER);
}

TEST(ComError, CarriesCodeAndErrorInformation) {
  IErrorInfoPtr info = CreateErrorInfoFor(IID_IUnknown, u"what went wrong");
  _com_error error(E_FAIL, info.GetInterfacePtr(), true);
  _com_error copy = error;
  info = nullptr;  // the errors hold their own references
  EXPECT_EQ(copy.Error(), E_FAIL);
  EXPECT_EQ(copy.Description(), u"what went wrong");
  EXPECT_EQ(copy.ErrorMessage(), u"Unspecified error");
  IErrorInfoPtr fromError(copy.ErrorInfo(), false);
  ASSERT_TRUE(fromError);
  GUID failed{};
  EXPECT_EQ(fromError->GetGUID(&failed), S_OK);
  EXPECT_EQ(failed, IID_IUnknown);

  _com_error bare(E_POINTER);
  EXPECT_EQ(bare.ErrorInfo(), nullptr);
  EXPECT_EQ(bare.Description(), u"");
  EXPECT_EQ(bare.ErrorMessage(), u"Invalid pointer");
  EXPECT_EQ(_com_error(MakeFailure(0x80041234)).ErrorMessage(), u"Unknown error 0x80041234");
}

TEST(ComError, ThreadErrorInformationIsTakenOnce) {
  ASSERT_EQ(SetErrorInfo(0, CreateErrorInfoFor(IID_IUnknown, u"first").GetInterfacePtr()), S_OK);
  IErrorInfo* taken = nullptr;
  ASSERT_EQ(GetErrorInfo(0, &taken), S_OK);
  IErrorInfoPtr owned(taken, false);
  std::u16string text;
  owned->GetDescription(&text);
  EXPECT_EQ(text, u"first");
  EXPECT_EQ(GetErrorInfo(0, &taken), S_FALSE);
  EXPECT_EQ(taken, nullptr);
  EXPECT_EQ(SetErrorInfo(1, nullptr), E_INVALIDARG);
}

}  // namespace
