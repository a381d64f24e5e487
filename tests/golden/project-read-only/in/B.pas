unit B;
var Q: TQuery;
end.
