#include "Ending.h"
#include "LidHelper.h"

#import <Foundation/Foundation.h>

#include <unistd.h>

/// Started by launchd, as root. It takes no arguments.
int main() {
    wakeloft::LidHelper* helper = nullptr;
    @autoreleasepool {
        helper = new wakeloft::LidHelper;
        wakeloft::watchTerminationSignals([helper] { helper->end(); });
    }
    _exit(helper->run()); // nothing is taken apart: XPC's threads may still be in it
}
