unit z;
var Q: TQuery;
end.
