// refused by the compiler: call to deleted function 'from_chars'
#include <charconv>
double use(const char* first, const char* last) {
    double number = 0;
    std::from_chars(first, last, number);
    return number;
}
