#include "BundleLocalizer.h"

#include "FoundationText.h"

namespace wakeloft {

namespace {

AppLanguage bundleLanguage() {
    std::vector<std::string> preferred;
    for (NSString* each in NSBundle.mainBundle.preferredLocalizations)
        preferred.push_back(plainText(each));
    return AppLanguage::preferring(preferred, {plainText(NSLocale.currentLocale.localeIdentifier)});
}

} // namespace

BundleLocalizer::BundleLocalizer() : language_(bundleLanguage()) {}

std::string BundleLocalizer::text(Table table, const char* key) const {
    NSString* english = foundationText(key);
    NSString* tableName = table == Table::deepwake ? @"Deepwake" : nil;
    return plainText([NSBundle.mainBundle localizedStringForKey:english value:english table:tableName]);
}

bool BundleLocalizer::isRightToLeft() const {
    return language_.layoutDirection == LayoutDirection::rightToLeft;
}

} // namespace wakeloft
