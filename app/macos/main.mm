#include "MacApp.h"

#import <Foundation/Foundation.h>

int main() {
    @autoreleasepool {
        static auto* const app = new wakeloft::MacApp;
        app->run();
    }
}
