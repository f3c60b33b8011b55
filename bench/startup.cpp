// Does nothing: what starting a program with the standard streams and JsonCpp costs.

#include <iostream>

int main() {}
