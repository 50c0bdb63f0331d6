// refused by the linker: undefined symbol: gettid
#include <unistd.h>
int main() {
    return gettid();
}
