# A short run of the accuracy meter over the whole list of functions.
if(TARGET orx_accuracy)
  add_test(NAME accuracy COMMAND orx_accuracy --short)
endif()
