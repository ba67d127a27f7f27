#include "linux/locale/locale.h"

#include <unicode/coll.h>
#include <unicode/numfmt.h>

#include <mutex>
#include <utility>

#include "linux/locale/date_texts.h"
#include "linux/locale/locale_name.h"
#include "linux/locale/system_zone.h"
#include "linux/locale/unicode_text.h"

namespace orvane::host {
namespace {

icu::Locale localeOf(const Region& region) {
  const auto given = region.locale ? knownLocaleName(*region.locale) : std::nullopt;
  const auto name = given ? *given : systemLocaleName(region.system);
  return icu::Locale::createCanonical(name.c_str());
}

// Secondary strength: accents count, case does not.
std::unique_ptr<icu::Collator> makeCollator(const icu::Locale& locale) {
  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(locale, status));
  if (U_FAILURE(status)) return nullptr;
  collator->setStrength(icu::Collator::SECONDARY);
  return collator;
}

// Everything that depends on one locale and one zone, made when first needed.
struct Texts {
  Texts(const icu::Locale& locale, std::unique_ptr<icu::TimeZone> zone)
      : icuLocale(locale), dates(locale, std::move(zone)) {}

  icu::Locale icuLocale;
  DateTexts dates;
  std::unique_ptr<icu::NumberFormat> numbers;
  std::unique_ptr<icu::Collator> collator;
};

class IcuSystemLocale final : public SystemLocale {
 public:
  explicit IcuSystemLocale(Region region) : region_(std::move(region)) { systemChanged(); }

  void systemChanged() override {
    auto texts = std::make_unique<Texts>(localeOf(region_), zoneOf(region_, region_.now()));
    const std::lock_guard lock(mutex_);
    texts_ = std::move(texts);
  }

  [[nodiscard]] std::string weekdayWide(Date date) const override {
    return dateText(DateText::weekdayWide, date);
  }
  [[nodiscard]] std::string dateLong(Date date) const override {
    return dateText(DateText::dateLong, date);
  }
  [[nodiscard]] std::string dateAbbreviatedTimeShortened(Date date) const override {
    return dateText(DateText::dateAbbreviatedTimeShortened, date);
  }
  [[nodiscard]] std::string timeShortened(Date date) const override {
    return dateText(DateText::timeShortened, date);
  }

  [[nodiscard]] std::string integer(std::int64_t number) const override {
    const std::lock_guard lock(mutex_);
    UErrorCode status = U_ZERO_ERROR;
    auto& format = texts_->numbers;
    if (!format) format.reset(icu::NumberFormat::createInstance(texts_->icuLocale, status));
    if (!format || U_FAILURE(status)) return std::to_string(number);
    icu::UnicodeString text;
    return toUtf8(format->format(number, text));
  }

  [[nodiscard]] std::string lowercased(std::string_view text) const override {
    return toUtf8(fromUtf8(text).toLower(icuLocale()));
  }
  [[nodiscard]] std::string uppercased(std::string_view text) const override {
    return toUtf8(fromUtf8(text).toUpper(icuLocale()));
  }

  [[nodiscard]] int localizedCaseInsensitiveCompare(std::string_view a,
                                                    std::string_view b) const override {
    const auto left = fromUtf8(a), right = fromUtf8(b);
    const std::lock_guard lock(mutex_);
    auto& collator = texts_->collator;
    if (!collator) collator = makeCollator(texts_->icuLocale);
    UErrorCode status = U_ZERO_ERROR;
    if (collator) {
      const int order = collator->compare(left, right, status);
      if (U_SUCCESS(status)) return order;
    }
    return left.caseCompare(right, U_FOLD_CASE_DEFAULT);
  }

  [[nodiscard]] bool isRightToLeft() const override { return icuLocale().isRightToLeft(); }

 private:
  [[nodiscard]] std::string dateText(DateText kind, Date date) const {
    const std::lock_guard lock(mutex_);
    return texts_->dates.text(kind, date);
  }
  [[nodiscard]] icu::Locale icuLocale() const {
    const std::lock_guard lock(mutex_);
    return texts_->icuLocale;
  }

  Region region_;
  mutable std::mutex mutex_;
  std::unique_ptr<Texts> texts_;
};

}  // namespace

std::unique_ptr<SystemLocale> makeLocale(Region region) {
  return std::make_unique<IcuSystemLocale>(std::move(region));
}

}  // namespace orvane::host
