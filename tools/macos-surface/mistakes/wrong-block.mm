// refused by the compiler: cannot initialize a parameter of type 'void (^
#import <Foundation/Foundation.h>
NSTimer* use() {
    return [NSTimer timerWithTimeInterval:1
                                  repeats:NO
                                    block:^(NSNotification* notification) {
                                        static_cast<void>(notification);
                                    }];
}
