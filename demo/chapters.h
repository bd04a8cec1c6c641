// The chapters of the demo. Each prints its part of the tour; it may throw InputError.
#pragma once

#include <string>

void vector_math(const std::string& data_directory);
void powers(const std::string& data_directory);
void accuracy(const std::string& data_directory);
void globe(const std::string& data_directory);
void impedance(const std::string& data_directory);
void monte_carlo(const std::string& data_directory);
void densities(const std::string& data_directory);
void statistics(const std::string& data_directory);
void robust(const std::string& data_directory);
void data_fitting(const std::string& data_directory);
void normal_plot(const std::string& data_directory);
void quasi(const std::string& data_directory);
