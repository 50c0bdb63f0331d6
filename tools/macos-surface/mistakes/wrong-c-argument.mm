// refused by the compiler: no matching function for call to 'IOPMAssertionCreateWithName'
#import <Foundation/Foundation.h>
#import <IOKit/pwr_mgt/IOPMLib.h>
int use(uint64_t* assertion) {
    return IOPMAssertionCreateWithName(CFSTR("type"), kIOPMAssertionLevelOn, CFSTR("name"), assertion);
}
