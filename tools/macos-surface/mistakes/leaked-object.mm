// refused by the linter: Potential leak of an object stored into 'information'
#import <Foundation/Foundation.h>
#import <IOKit/ps/IOPowerSources.h>
bool use() {
    CFTypeRef information = IOPSCopyPowerSourcesInfo();
    return information != nullptr;
}
