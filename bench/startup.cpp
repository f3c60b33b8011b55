// Does nothing: what starting a program with the standard streams costs.

#include <iostream>

int main() {}
