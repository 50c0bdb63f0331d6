// refused by the compiler: format specifies type 'char *' but the argument has type 'int'
#import <os/log.h>
void use(os_log_t log) {
    os_log_with_type(log, OS_LOG_TYPE_DEFAULT, "%{public}s", 7);
}
